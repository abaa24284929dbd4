// The program manager under a real driver: both maps, lookups, the GL objects it makes,
// and the compile/link diagnostic of every catalogue program.
#include <set>
#include <string>
#include <vector>

#include "gl_scene.h"
#include "shader/fx_2d.h"
#include "shader/fx_3d.h"

namespace vorn::test {
namespace {

// Programs whose texts use undeclared names or declare one twice; a strict driver
// refuses them, and the catalogue keeps them as written. Grass and ocean declare what
// they use and are not among them.
const std::set<int> kRefused = {
    Vorn_3DFX::FX_NORMAL_VIEW_INVERSE,      Vorn_3DFX::FX_DIFFUSE_ENVREFLECT,
    Vorn_3DFX::FX_TEXTURE_SHADOWMAP,        Vorn_3DFX::FX_DIFFUSE_TEXTURE_BUMP,
    Vorn_3DFX::FX_DIFFUSE_TEXTURE_ENVREFLECT, Vorn_3DFX::FX_DIFFUSE_TEXTURE_ENVREFLECT_SPECULAR,
    Vorn_3DFX::FX_DIFFUSE_SKIN,             Vorn_3DFX::FX_DIFFUSE_SPECULAR_SKIN,
};

Vorn_FXManage& Manager() { return *SharedFXManager(); }

using FXManageGL = GLTest;

TEST_F(FXManageGL, MapsCoverBothRangesAndHoldOnlyCataloguePrograms) {
  const Vorn_FXManage& fx = Manager();
  ASSERT_EQ(fx.Shader_2DFX_Dict.size(), 30u);
  ASSERT_EQ(fx.Shader_3DFX_Dict.size(), 80u);
  EXPECT_EQ((std::array<int, 4>{fx.Shader_2DFX_Dict.begin()->first, fx.Shader_2DFX_Dict.rbegin()->first,
                                fx.Shader_3DFX_Dict.begin()->first, fx.Shader_3DFX_Dict.rbegin()->first}),
            (std::array<int, 4>{200, 229, 300, 379}));

  std::set<unsigned int> handles;
  for (const auto* map : {&fx.Shader_2DFX_Dict, &fx.Shader_3DFX_Dict}) {
    for (const auto& [id, program] : *map) {
      const bool hasTexts = id < 300 ? !Vorn_2DFX::ProgramTexts(id).first.empty() &&
                                           !Vorn_2DFX::ProgramTexts(id).second.empty()
                                     : Vorn_3DFX::IdentifierName(id) && Vorn_3DFX().GetVS(id) && [&] {
                                         Vorn_3DFX fx3d;
                                         fx3d.GetVS(id);
                                         return fx3d.GetPS(id).has_value();
                                       }();
      EXPECT_EQ(program.has_value(), hasTexts) << id;
      if (!program) continue;
      EXPECT_TRUE(glIsProgram(*program)) << id;
      EXPECT_TRUE(handles.insert(*program).second) << "handle shared by " << id;
      // Both shader objects stay attached after linking.
      GLint attached = 0;
      glGetProgramiv(*program, GL_ATTACHED_SHADERS, &attached);
      EXPECT_EQ(attached, 2) << id;
    }
  }
  EXPECT_EQ(std::count_if(fx.Shader_3DFX_Dict.begin(), fx.Shader_3DFX_Dict.end(),
                          [](const auto& entry) { return entry.second.has_value(); }),
            31);
}

TEST_F(FXManageGL, GetShaderLooksUp2DBefore3D) {
  const Vorn_FXManage& fx = Manager();
  for (int id : {212, 319, 300, 380, 230, 200, 0, -1}) EXPECT_FALSE(fx.GetShader(id).has_value()) << id;
  EXPECT_TRUE(fx.Shader_2DFX_Dict.count(212));
  EXPECT_FALSE(fx.Shader_3DFX_Dict.count(380));
  EXPECT_EQ(fx.GetShader(Vorn_2DFX::FX_COLOR), fx.Shader_2DFX_Dict.at(201));
  EXPECT_EQ(fx.GetShader(Vorn_3DFX::FX_COLOR), fx.Shader_3DFX_Dict.at(303));
  EXPECT_NE(fx.GetShader(Vorn_2DFX::FX_COLOR), fx.GetShader(Vorn_3DFX::FX_COLOR));
}

TEST_F(FXManageGL, CreateShaderWithAnEmptyTextMakesNoGLObject) {
  Vorn_FXManage& fx = Manager();
  Vorn_3DFX fx3d;
  const std::string vs = *fx3d.GetVS(Vorn_3DFX::FX_COLOR);
  const std::string ps = *fx3d.GetPS(Vorn_3DFX::FX_COLOR);
  // GL names come from one counter on this driver: no object made in between means the
  // two probes get neighbouring names.
  const GLuint before = glCreateShader(GL_VERTEX_SHADER);
  EXPECT_FALSE(fx.CreateShader("", ps).has_value());
  EXPECT_FALSE(fx.CreateShader(vs, "").has_value());
  const GLuint after = glCreateShader(GL_VERTEX_SHADER);
  EXPECT_EQ(after, before + 1);
  glDeleteShader(before);
  glDeleteShader(after);

  const auto program = fx.CreateShader(vs, ps);
  ASSERT_TRUE(program.has_value());
  GLint linked = GL_FALSE;
  glGetProgramiv(*program, GL_LINK_STATUS, &linked);
  EXPECT_EQ(linked, GL_TRUE);
}

TEST_F(FXManageGL, DiagnosticReportsExactlyTheRefusedTexts) {
  const auto report = Manager().DiagnoseShaders();
  std::size_t programs2D = 0;
  for (const auto& [id, program] : Manager().Shader_2DFX_Dict) programs2D += program.has_value();
  ASSERT_EQ(report.size(), programs2D + 31u);
  int previous = 0;
  for (const FXProgramStatus& status : report) {
    SCOPED_TRACE(status.Name);
    EXPECT_GT(status.FXID, previous);  // 2D first, each range ascending
    previous = status.FXID;
    EXPECT_EQ(status.Program, Manager().GetShader(status.FXID));
    if (kRefused.count(status.FXID)) {
      EXPECT_FALSE(status.Usable());
      EXPECT_FALSE(status.Linked);
      EXPECT_FALSE(status.VSLog.empty() && status.PSLog.empty() && status.LinkLog.empty());
    } else {
      EXPECT_TRUE(status.Usable()) << "VS: " << status.VSLog << "\nPS: " << status.PSLog
                                   << "\nlink: " << status.LinkLog;
    }
  }
  if (programs2D) {
    EXPECT_EQ(report.front().Name, "Vorn_2DFX.FX_COLOR");
  }
  EXPECT_EQ(report.back().Name, "Vorn_3DFX.FX_AXIS");
}

TEST_F(FXManageGL, PrintShaderRegeneratesTheSource) {
  ConsoleCapture capture;
  Manager().PrintShader(Vorn_3DFX::FX_DIFFUSE);
  const auto& lines = capture.lines();
  ASSERT_GE(lines.size(), 4u);
  EXPECT_EQ((std::vector<std::string>(lines.begin(), lines.begin() + 3)),
            (std::vector<std::string>{"VSCode (310)=>", "", "#version 120"}));
  const auto ps = std::find(lines.begin(), lines.end(), "PSCode (310)=>");
  ASSERT_NE(ps, lines.end());
  EXPECT_EQ(*(ps - 1), "");  // the text's final newline gives an empty last line
  EXPECT_EQ(*(ps + 2), "#version 330 core");

  // Vertex text only: no pixel header. Unknown and empty identifiers print nothing.
  capture.clear();
  Manager().PrintShader(Vorn_3DFX::FX_DIFFUSE_TEXTURE_SHADOWMAP);
  EXPECT_EQ(capture.lines().front(), "VSCode (319)=>");
  EXPECT_EQ(std::count(capture.lines().begin(), capture.lines().end(), "PSCode (319)=>"), 0);
  capture.clear();
  for (int id : {212, 300, 380, 999}) Manager().PrintShader(id);
  EXPECT_TRUE(capture.lines().empty());
  // A 2D identifier prints its fixed texts.
  Manager().PrintShader(Vorn_2DFX::FX_TEXTURE);
  EXPECT_EQ(std::count(capture.lines().begin(), capture.lines().end(), "PSCode (202)=>"), 1);
}

}  // namespace
}  // namespace vorn::test
