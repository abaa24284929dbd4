#pragma once
// Vorn_FXManage: turns every entry of the 2D and 3D catalogues into a linked program
// once, when it is constructed (a GL context must be current), and hands out the
// program of an identifier afterwards. Compile and link results are not looked at
// during construction: a refused text still leaves its handle in the map. The
// diagnostic DiagnoseShaders() reports them on request.
//
// The manager owns the programs and shader objects it made: dropping it deletes them
// (when a context is current; at process exit the context may be gone first). Nodes
// that still name one of its programs draw without it afterwards.
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace vorn {

// Compile and link result of one catalogue program, as the driver reports it.
struct FXProgramStatus {
  int FXID = 0;
  std::string Name;  // "Vorn_3DFX.FX_DIFFUSE"
  unsigned int Program = 0;
  bool VSCompiled = false;
  bool PSCompiled = false;
  bool Linked = false;
  std::string VSLog;
  std::string PSLog;
  std::string LinkLog;

  bool Usable() const { return VSCompiled && PSCompiled && Linked; }
};

// How many programs managers have deleted so far. Caches keyed by program name (the
// node draw's uniform locations) compare it with the count they last saw and forget
// their entries when it moved, since a deleted name may be handed out again.
inline std::uint64_t ProgramsDeletedCount = 0;

class Vorn_FXManage {
 public:
  using ProgramMap = std::map<int, std::optional<unsigned int>>;

  // One entry for every integer from FX_BEGIN up to but not including FX_END of each
  // catalogue; the value is empty where the identifier has no program.
  ProgramMap Shader_2DFX_Dict;
  ProgramMap Shader_3DFX_Dict;

  // Generates and compiles the whole catalogue: the 2D range first, then the 3D range,
  // each in ascending order.
  Vorn_FXManage();
  ~Vorn_FXManage();
  Vorn_FXManage(const Vorn_FXManage&) = delete;
  Vorn_FXManage& operator=(const Vorn_FXManage&) = delete;

  // A linked program from two texts; nothing (and no GL object) when either is empty.
  // The shader objects stay attached and alive as long as the manager.
  std::optional<unsigned int> CreateShader(const std::string& vsCode, const std::string& psCode);

  // The program of an identifier: the 2D map is searched first, then the 3D map.
  std::optional<unsigned int> GetShader(int FXID) const;

  // Prints the regenerated source of one identifier; nothing for an unknown number.
  void PrintShader(int FXID) const;

  // Compile status, link status and driver logs of every program in the maps, 2D
  // identifiers first, in ascending order. Never called by start-up or the frame.
  std::vector<FXProgramStatus> DiagnoseShaders() const;

  // Vertex and pixel shader objects of a program made by CreateShader.
  std::optional<std::pair<unsigned int, unsigned int>> ShaderObjects(unsigned int program) const;

  // Catalogue name of an identifier ("Vorn_2DFX.FX_COLOR"); empty for a free number.
  static std::string IdentifierName(int FXID);

 private:
  std::map<unsigned int, std::pair<unsigned int, unsigned int>> shaderObjects_;
};

// The one shader manager, created by the resource manager.
inline std::shared_ptr<Vorn_FXManage> FXManagerInstance;

}  // namespace vorn
