// The 2D programs whose output is known without a scene draw it: the default colour,
// the VR eye masks and the deferred lights with no light. (That every 2D program
// compiles and links is the manager's diagnostic test.)
#include <array>
#include <string>
#include <vector>

#include "gl_scene.h"
#include "shader/fx_2d.h"

namespace vorn::test {
namespace {

using FX = Vorn_2DFX;
using RGB = std::array<int, 3>;

// Draws the clip-space quad with a 1x1 texture of `rgba` on units 0 to 3.
class Fx2DDraw : public GLTest {
 protected:
  void TearDown() override {
    if (HasContext()) {
      if (texture_) glDeleteTextures(1, &texture_);
      glActiveTexture(GL_TEXTURE0);
      glUseProgram(0);
    }
    GLTest::TearDown();
  }

  void Draw(int fxid, std::array<unsigned char, 4> rgba) {
    glViewport(0, 0, kWindowWidth, kWindowHeight);
    glDisable(GL_DEPTH_TEST);
    glDisable(GL_BLEND);
    glClearColor(0.0f, 0.0f, 1.0f, 1.0f);
    glClear(GL_COLOR_BUFFER_BIT);
    if (texture_) glDeleteTextures(1, &texture_);
    const GLuint program = Program(fxid);
    texture_ = MakeTexture(1, 1, GL_RGBA, rgba.data());
    glUseProgram(program);
    for (int unit = 0; unit < 4; ++unit) {
      glActiveTexture(GL_TEXTURE0 + unit);
      glBindTexture(GL_TEXTURE_2D, texture_);
      const GLint location = glGetUniformLocation(program, ("texture" + std::to_string(unit)).c_str());
      if (location >= 0) glUniform1i(location, unit);
    }
    glBegin(GL_QUADS);
    glTexCoord2f(0, 0), glVertex2f(-1, -1);
    glTexCoord2f(1, 0), glVertex2f(1, -1);
    glTexCoord2f(1, 1), glVertex2f(1, 1);
    glTexCoord2f(0, 1), glVertex2f(-1, 1);
    glEnd();
    glFinish();
    glUseProgram(0);
  }

 private:
  GLuint texture_ = 0;
};

// The pixel at a fraction of the window, counted from the bottom left.
RGB At(double fx, double fy) {
  const RGBA p = Pixel(static_cast<int>(fx * kWindowWidth), static_cast<int>(fy * kWindowHeight));
  return {p[0], p[1], p[2]};
}

TEST_F(Fx2DDraw, KnownOutputsOfColourVRMasksAndDeferredLight) {
  const RGB red{255, 0, 0}, white{255, 255, 255}, black{0, 0, 0};
  const RGB grey{26, 27, 28};  // the mask colour vec4(0.1, 0.105, 0.11, 1.0) in bytes
  struct Probe {
    double x, y;
    RGB colour;
  };
  const struct {
    const char* name;
    int fxid;
    std::array<unsigned char, 4> texel;
    std::vector<Probe> probes;
  } cases[] = {
      {"colour defaults to opaque white", FX::FX_COLOR, {255, 0, 0, 255}, {{0.5, 0.5, white}, {0.01, 0.01, white}}},
      {"left eye cuts lower left and upper right", FX::FX_VRMODE_LEFT, {255, 0, 0, 255},
       {{0.5, 0.5, red}, {0.1, 0.9, red}, {0.9, 0.1, red}, {0.05, 0.05, grey}, {0.9, 0.9, grey}}},
      {"right eye cuts upper left and lower right", FX::FX_VRMODE_RIGHT, {255, 0, 0, 255},
       {{0.5, 0.5, red}, {0.9, 0.9, red}, {0.1, 0.1, red}, {0.1, 0.9, grey}, {0.9, 0.1, grey}}},
      {"deferred light without lights is black", FX::FX_DEFER_LIGHT, {255, 255, 255, 255}, {{0.5, 0.5, black}}},
  };
  for (const auto& c : cases) {
    Draw(c.fxid, c.texel);
    for (const Probe& p : c.probes) {
      ExpectRGB(At(p.x, p.y), p.colour, 1, std::string(c.name) + " at " + std::to_string(p.x) + "," + std::to_string(p.y));
    }
  }
}

}  // namespace
}  // namespace vorn::test
