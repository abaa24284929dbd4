// The ocean: its plane and program, waves on screen driven by scene time and its own
// fields, and programs of other nodes untouched by water and grass drawn beside them.
#include "landscape/ocean.h"

#include <epoxy/gl.h>
// GLU after epoxy, which must come before any GL header.
#include <GL/glu.h>

#include <vector>

#include "core/errors.h"
#include "core/math_util.h"
#include "gl_scene.h"
#include "landscape/grass.h"
#include "node/program_uniforms.h"
#include "shader/fx_3d.h"

namespace vorn::test {
namespace {

using Ocean = Vorn_3DOcean;

class OceanGL : public NodeGLTest {
 protected:
  std::shared_ptr<Ocean> MakeOcean(int rows, int cows, double tilesize) {
    auto ocean = MakeNode<Ocean>();
    ocean->OnLoad(scene);
    ConsoleCapture quiet;  // ApplyFX prints the program's source
    ocean->CreateOcean(rows, cows, tilesize);
    return ocean;
  }
  // The window after drawing the nodes at scene time t.
  std::vector<unsigned char> Frame(std::initializer_list<Vorn_3DGameNode*> nodes, double t) {
    scene->currTime = t;
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    for (Vorn_3DGameNode* n : nodes) n->draw();
    return WindowPixels();
  }
  static std::size_t Differing(const std::vector<unsigned char>& a, const std::vector<unsigned char>& b) {
    std::size_t n = 0;
    for (std::size_t i = 0; i < a.size(); i += 4) n += (a[i] != b[i] || a[i + 1] != b[i + 1] || a[i + 2] != b[i + 2]);
    return n;
  }
};

// Type, program, default fields and setters are the script suite's checks
// (test_water_grass.py); a refused size must leave no submesh behind.
TEST_F(OceanGL, ARefusedSizeMakesNothing) {
  if (!HasContext()) return;
  auto bad = MakeNode<Ocean>();
  EXPECT_THROW(bad->CreateOcean(-1, 4, 1.0), ValueError);
  EXPECT_TRUE(bad->SubMeshList.empty());
}

// Perspective view from (0, 4, 12) onto a white 10 by 10 ocean at the origin.
class OceanWavesGL : public OceanGL {
 protected:
  void SetUp() override {
    OceanGL::SetUp();
    if (!HasContext()) return;
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    gluPerspective(45.0, double(kWindowWidth) / kWindowHeight, 0.1, 100.0);
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    gluLookAt(0, 4, 12, 0, 0, 0, 0, 1, 0);
  }
};

TEST_F(OceanWavesGL, WavesMoveWithSceneTimeByTheOceanFields) {
  if (!HasContext()) return;
  auto ocean = MakeOcean(20, 20, 0.5);
  ocean->SetWave(0.5, 1.0);
  const auto at0 = Frame({ocean.get()}, 0.0);
  const auto at2 = Frame({ocean.get()}, 2.0);
  EXPECT_GT(Differing(at0, at2), 200u) << "the surface moved between the two times";
  EXPECT_TRUE(Frame({ocean.get()}, 0.0) == at0) << "the same time draws the same picture";

  // Without amplitude the surface is still (the program's own default would move it).
  ocean->SetWave(0.5, 0.0);
  EXPECT_EQ(Differing(Frame({ocean.get()}, 0.0), Frame({ocean.get()}, 2.0)), 0u);

  // Every wave and bump uniform carries its field.
  ocean->SetWave(0.75, 0.25);
  ocean->SetBump(1.25, 0.5, 0.125);
  Frame({ocean.get()}, 1.0);
  const GLuint program = Program(Vorn_3DFX::FX_OCEAN);
  const ProgramUniforms& u = GetProgramUniforms(program);
  const struct {
    GLint location;
    float want;
  } uniforms[] = {{u.uWaveFreq, 0.75f}, {u.uWaveAmp, 0.25f}, {u.uBumpScale, 1.25f}, {u.uBumpSpeedX, 0.5f},
                  {u.uBumpSpeedY, 0.125f}};
  for (const auto& c : uniforms) {
    ASSERT_GE(c.location, 0) << "want " << c.want;
    float got = 0;
    glGetUniformfv(program, c.location, &got);
    EXPECT_EQ(got, c.want) << "location " << c.location;
  }
}

TEST_F(OceanGL, OtherProgramsDrawTheSamePixelsBesideWaterAndGrass) {
  if (!HasContext()) return;
  // A diffuse quad alone, then between an ocean and a grass patch in the same frame.
  auto quad = Quad(150, 100, 60, 40, Vorn_3DFX::FX_DIFFUSE);
  quad->SetMeshColor(0.8, 0.6, 0.4);
  const auto alone = Frame({quad.get()}, 1.0);
  auto ocean = MakeOcean(8, 8, 5.0);
  ocean->SetWave(0.5, 3.0);
  auto grass = MakeNode<Vorn_3DGrass>();
  grass->OnLoad(scene);
  {
    ConsoleCapture quiet;
    grass->CreateGrass(20.0, 200, 4, 6, 30, 60, 10);
  }
  // White blades: without a texture they would sample black, the clear colour.
  grass->LoadSubMeshTextureFromImage(0, 0, std::make_shared<const std::vector<std::uint8_t>>(4, std::uint8_t{255}),
                                     "RGBA", 1, 1, false);
  const auto together = Frame({ocean.get(), quad.get(), grass.get()}, 1.0);
  // The quad's rectangle and its surroundings up to the other nodes read the same.
  std::size_t compared = 0;
  for (int y = 90; y < 150; ++y) {
    for (int x = 140; x < 220; ++x) {
      const std::size_t i = (static_cast<std::size_t>(y) * kWindowWidth + x) * 4;
      ASSERT_EQ((std::array<int, 3>{alone[i], alone[i + 1], alone[i + 2]}),
                (std::array<int, 3>{together[i], together[i + 1], together[i + 2]}))
          << "pixel " << x << ", " << y;
      ++compared;
    }
  }
  EXPECT_EQ(compared, 60u * 80u);
  EXPECT_TRUE(alone != together) << "the ocean and the grass drew something";
  const std::size_t centre = (120u * kWindowWidth + 180u) * 4;
  EXPECT_GT(alone[centre], 100) << "the quad drew";
}

}  // namespace
}  // namespace vorn::test
