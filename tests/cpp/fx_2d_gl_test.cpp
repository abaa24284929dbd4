// Every 2D program compiles and links on this machine's driver, and the programs whose
// output is known without a scene draw it: the default colour, the VR eye masks and the
// deferred lights with no light.
#include <gtest/gtest.h>

#include <array>
#include <string>

#include "gl_harness.h"
#include "shader/fx_2d.h"

namespace vorn::test {
namespace {

using FX = Vorn_2DFX;
using Fx2DGL = GLTest;

std::string ShaderLog(GLuint shader) {
  GLint length = 0;
  glGetShaderiv(shader, GL_INFO_LOG_LENGTH, &length);
  std::string log(static_cast<std::size_t>(length > 0 ? length : 1), '\0');
  glGetShaderInfoLog(shader, length, nullptr, log.data());
  return log.c_str();
}

std::string ProgramLog(GLuint program) {
  GLint length = 0;
  glGetProgramiv(program, GL_INFO_LOG_LENGTH, &length);
  std::string log(static_cast<std::size_t>(length > 0 ? length : 1), '\0');
  glGetProgramInfoLog(program, length, nullptr, log.data());
  return log.c_str();
}

// Compiles and links the program of an identifier; on failure returns 0 and puts the
// driver's logs in `failure`.
GLuint BuildProgram(int fxid, std::string& failure) {
  const auto [vsCode, psCode] = FX::ProgramTexts(fxid);
  const GLuint program = glCreateProgram();
  const std::array<std::pair<GLenum, const std::string*>, 2> stages = {{{GL_VERTEX_SHADER, &vsCode},
                                                                        {GL_FRAGMENT_SHADER, &psCode}}};
  for (const auto& [type, code] : stages) {
    const GLuint shader = glCreateShader(type);
    const char* source = code->c_str();
    glShaderSource(shader, 1, &source, nullptr);
    glCompileShader(shader);
    GLint ok = GL_FALSE;
    glGetShaderiv(shader, GL_COMPILE_STATUS, &ok);
    if (!ok) failure += (type == GL_VERTEX_SHADER ? "vertex: " : "pixel: ") + ShaderLog(shader);
    glAttachShader(program, shader);
    glDeleteShader(shader);  // freed with the program
  }
  glLinkProgram(program);
  GLint linked = GL_FALSE;
  glGetProgramiv(program, GL_LINK_STATUS, &linked);
  if (!linked) failure += "link: " + ProgramLog(program);
  if (!failure.empty()) {
    glDeleteProgram(program);
    return 0;
  }
  return program;
}

TEST_F(Fx2DGL, EveryCatalogueProgramCompilesAndLinks) {
  int built = 0;
  for (int id = FX::FX_BEGIN; id < FX::FX_END; ++id) {
    if (FX::GetVS(id).empty()) continue;
    std::string failure;
    const GLuint program = BuildProgram(id, failure);
    EXPECT_NE(program, 0u) << "FX " << id << " refused by " << glGetString(GL_RENDERER) << ":\n" << failure;
    if (program) {
      glDeleteProgram(program);
      ++built;
    }
  }
  EXPECT_EQ(built, 15);
}

// Draws the clip-space quad with one 1x1 texture of `rgba` on units 0 to 3.
class Fx2DDraw : public GLTest {
 protected:
  void SetUp() override {
    GLTest::SetUp();
    if (IsSkipped() || HasFatalFailure()) return;
    glViewport(0, 0, kWindowWidth, kWindowHeight);
    glDisable(GL_DEPTH_TEST);
    glDisable(GL_BLEND);
    glClearColor(0.0f, 0.0f, 1.0f, 1.0f);
    glClear(GL_COLOR_BUFFER_BIT);
  }
  void TearDown() override {
    if (texture_) glDeleteTextures(1, &texture_);
    glActiveTexture(GL_TEXTURE0);
    glUseProgram(0);
    GLTest::TearDown();
  }

  void Draw(int fxid, std::array<unsigned char, 4> rgba) {
    std::string failure;
    const GLuint program = BuildProgram(fxid, failure);
    ASSERT_NE(program, 0u) << failure;
    glGenTextures(1, &texture_);
    glBindTexture(GL_TEXTURE_2D, texture_);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, 1, 1, 0, GL_RGBA, GL_UNSIGNED_BYTE, rgba.data());
    glUseProgram(program);
    for (int unit = 0; unit < 4; ++unit) {
      glActiveTexture(GL_TEXTURE0 + unit);
      glBindTexture(GL_TEXTURE_2D, texture_);
      const std::string name = "texture" + std::to_string(unit);
      const GLint location = glGetUniformLocation(program, name.c_str());
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
    glDeleteProgram(program);
  }

  // The pixel at a fraction of the window, counted from the bottom left.
  static std::array<int, 3> Pixel(double fx, double fy) {
    unsigned char p[4] = {};
    glReadPixels(static_cast<int>(fx * kWindowWidth), static_cast<int>(fy * kWindowHeight), 1, 1, GL_RGBA,
                 GL_UNSIGNED_BYTE, p);
    return {p[0], p[1], p[2]};
  }

 private:
  GLuint texture_ = 0;
};

constexpr std::array<int, 3> kRed = {255, 0, 0};
constexpr std::array<int, 3> kWhite = {255, 255, 255};
constexpr std::array<int, 3> kBlack = {0, 0, 0};

void ExpectMaskGrey(const std::array<int, 3>& p, const char* where) {
  // vec4(0.1, 0.105, 0.11, 1.0) in bytes
  EXPECT_NEAR(p[0], 26, 1) << where;
  EXPECT_NEAR(p[1], 27, 1) << where;
  EXPECT_NEAR(p[2], 28, 1) << where;
}

TEST_F(Fx2DDraw, ColorDefaultsToOpaqueWhite) {
  Draw(FX::FX_COLOR, {255, 0, 0, 255});
  EXPECT_EQ(Pixel(0.5, 0.5), kWhite);
  EXPECT_EQ(Pixel(0.01, 0.01), kWhite);
}

TEST_F(Fx2DDraw, VRLeftEyeCutsTheLowerLeftAndUpperRightCorners) {
  Draw(FX::FX_VRMODE_LEFT, {255, 0, 0, 255});
  EXPECT_EQ(Pixel(0.5, 0.5), kRed);
  EXPECT_EQ(Pixel(0.1, 0.9), kRed);
  EXPECT_EQ(Pixel(0.9, 0.1), kRed);
  ExpectMaskGrey(Pixel(0.05, 0.05), "lower left");
  ExpectMaskGrey(Pixel(0.9, 0.9), "upper right");
}

TEST_F(Fx2DDraw, VRRightEyeCutsTheUpperLeftAndLowerRightCorners) {
  Draw(FX::FX_VRMODE_RIGHT, {255, 0, 0, 255});
  EXPECT_EQ(Pixel(0.5, 0.5), kRed);
  EXPECT_EQ(Pixel(0.9, 0.9), kRed);
  EXPECT_EQ(Pixel(0.1, 0.1), kRed);
  ExpectMaskGrey(Pixel(0.1, 0.9), "upper left");
  ExpectMaskGrey(Pixel(0.9, 0.1), "lower right");
}

TEST_F(Fx2DDraw, DeferLightWithoutLightsIsBlack) {
  Draw(FX::FX_DEFER_LIGHT, {255, 255, 255, 255});
  EXPECT_EQ(Pixel(0.5, 0.5), kBlack);
}

}  // namespace
}  // namespace vorn::test
