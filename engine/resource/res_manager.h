#pragma once
// PyGameResManager: the one resource manager. It brings up the shader manager, reads the
// GL extension list and indexes every file below the resource root by lower-case file
// name, so the rest of the engine asks for "wall.jpg" and never spells a path.
//
// Paths: the index joins folders with "/" on every platform, and GetResPath compares
// dirName against those "/"-joined paths ("Terrain/hill" matches
// ".../Terrain/hill/height.raw"). Keys are lower-case file names.
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "core/ordered_map.h"
#include "resource/audio.h"
#include "resource/font.h"
#include "resource/image_load_result.h"

namespace vorn {

// A generated texture: size, mode text ("RGB") and bits per pixel.
struct DynamicTextureRecord {
  int Width = 0;
  int Height = 0;
  std::string Format;
  int Depth = 0;
};

// What GetResPath finds: nothing, one path, or every path that bears the name.
using ResPath = std::variant<std::monostate, std::string, std::vector<std::string>>;

class PyGameResManager : public std::enable_shared_from_this<PyGameResManager> {
 public:
  // Builds the manager, stores it in ResManagerInstance and creates the shader manager
  // in FXManagerInstance (which compiles every program: a GL context must be current).
  static std::shared_ptr<PyGameResManager> Create(const std::string& resdir);
  virtual ~PyGameResManager() = default;

  std::vector<std::string> ExtensionList;
  bool ETC_Support = false;
  bool DXT_Support = false;
  bool PVR_Support = false;
  std::string resdir;
  std::string fontdir;
  OrderedMap<std::string, std::vector<std::string>> fileDict;
  // File name to load result. Nothing stores into it; it stays empty by design.
  OrderedMap<std::string, ImageLoadResult> ImageDict;
  std::vector<std::string> ImageDict_MemManage_List;
  int ImageDict_MemManage_Total = 100;
  int ImageDict_MemManage_Count = 0;
  // Generated textures by GL texture id, and the frame buffer of each render-target
  // texture. Nothing removes entries: the GL objects live until the process ends.
  OrderedMap<unsigned, DynamicTextureRecord> DynamicTextureDict;
  OrderedMap<unsigned, unsigned> RenderTargetFrameBufferDict;
  // Paths of the scene side files ("<scene>_Res.Json") found below "Scene", in scan order.
  std::vector<std::string> SceneJsonDict;
  int soundPlayCount = 0;
  // ---- Music, sounds and fonts (audio_manager.cpp) ----
  // Sound id to sound. It exists from construction (so a found sound can be stored and
  // stopped); entries are never removed: a decoded sound lives as long as the manager.
  OrderedMap<int, std::shared_ptr<Vorn_Sound>> soundDict;
  // Finds fileName in the index and plays it (loopcount extra repeats, -1 forever);
  // an unknown name does nothing. RuntimeError for a file that is not music.
  void PlayMusic(const std::string& fileName, int loopcount = 0);
  void StopMusic();
  // The id of the sound started, or -1 for an unknown name (soundPlayCount unchanged).
  // RuntimeError for a file that is not a sound, before anything is stored.
  int PlaySound(const std::string& fileName);
  // Stops a sound by id; an unknown id prints "No Find Sound". The entry stays.
  void StopSound(int soundID);
  // A new font each call, or null for an unknown name. ValueError for fontSize <= 0,
  // RuntimeError for a file that is not a font.
  std::shared_ptr<Vorn_Font> GetFont(const std::string& ttfFile, int fontSize, bool bold = false,
                                     bool italic = false);

  const std::string& GetResRootDir() const { return resdir; }
  const std::vector<std::string>& GetSceneList() const { return SceneJsonDict; }
  void SetFontDir(const std::string& path) { fontdir = path; }

  bool CheckCompressTextureFormat_ETC() const;
  bool CheckCompressTextureFormat_DXT() const;
  bool CheckCompressTextureFormat_PVR() const;

  ResPath GetResPath(const std::string& filename, const std::string* dirName = nullptr) const;
  void FoundAllResFile(const std::string& parentDir, const std::string* dirType = nullptr);

  // ---- Images (res_manager_images.cpp) ----
  // A PNG, JPG, TGA or DDS by name: (image, width, height, flag), or the failure value.
  ImageLoadResult LoadImageFile(const std::string& fileName, const std::optional<std::string>& dirName = std::nullopt);
  ImageLoadResult LoadTGA(const std::string& fileName);
  ImageLoadResult LoadDDS(const std::string& fileName);
  // Records a use of fileName: moves it to the end of the use list (nothing is evicted).
  void ManageImageMemory(const std::string& fileName);
  void ReleaseAllImageMemeory();
  // The numbered PNG files that share the stem of fileName's path before its last "_".
  std::vector<std::string> GetImageListFiles(const std::string& fileName) const;

  // ---- Generated textures and render targets (res_manager_textures*.cpp) ----
  void AddDynamicTexture(unsigned texID, int Width, int Height, const std::string& Format, int Depth);
  // The record of a generated texture, or nothing for an unknown id.
  const DynamicTextureRecord* GetDynamicTexture(unsigned textID) const { return DynamicTextureDict.find(textID); }
  // The frame buffer a render-target texture belongs to, or nothing.
  std::optional<unsigned> GetRenderTargetTextureFrameBuffer(unsigned textID) const;
  // A Width x Height noise texture for the ambient occlusion pass: R and G random, B 0,
  // repeating, linear. ValueError for a negative or oversized size (GL-facing).
  unsigned AddSSAORandTexture(int Width = 10, int Height = 10);
  // A colour texture with its frame buffer and a depth-stencil render buffer; a size of
  // 0 or less takes SCREEN_WIDTH / SCREEN_HEIGHT. The depth variant sets no filters
  // (GL-facing).
  unsigned CreateRenderTargetTexture(int texWidth = 0, int texHeight = 0, bool IsDepthBuffer = false);
  // A normal map derived from the brightness of a picture found by name in the index:
  // (image, width, height, false), or the failure value.
  ImageLoadResult MakeBumpImage(const std::string& fileName);

  std::vector<std::string> ListSkyBoxTexture() const;
  std::vector<std::string> ListTerrainDir() const;
  std::vector<std::string> ListOceanDir() const;

  // Splits the GL extension string at single blanks.
  static std::vector<std::string> SplitExtensions(const std::string& text);

 protected:
  PyGameResManager() = default;
  // Construction steps after the manager is registered as ResManagerInstance.
  void Init(const std::string& resdir);

 private:
  void Scan(const std::string& parentDir, const std::string* dirType, int depth);
};

// The one resource manager; its constructor stores itself here.
inline std::shared_ptr<PyGameResManager> ResManagerInstance;

// Reads the extension list of the current context (GL-facing).
std::string ReadGLExtensionString();
// Creates the shader manager into FXManagerInstance (GL-facing).
void CreateFXManager();

}  // namespace vorn
