// The VR mode pixel text: its condition line per eye and GrassType.
#include "shader/fx_2d.h"

#include <gtest/gtest.h>

#include <string>

#include "core/errors.h"

namespace vorn {
namespace {

using FX = Vorn_2DFX;

TEST(Vorn2DFX, VRModeAssemblesHeadConditionAndTail) {
  // The left-eye text itself is pinned by the catalogue fingerprints (fx_3d_test.cpp).
  const std::string left = FX::GetPS_VRMode(1);
  EXPECT_EQ(FX::GetPS_VRMode(1, 1), left);

  // Only the condition line differs between the variants: eye 1 or any other eye,
  // GrassType 1 or 2.
  const std::string leftLine =
      "    if ((vOutTexcoords.x * vOutTexcoords.y) < 0.04 || (1.0 - vOutTexcoords.x) * (1.0 - vOutTexcoords.y) < 0.04 )";
  const std::string rightLine =
      "    if (((1.0 - vOutTexcoords.x ) * vOutTexcoords.y) < 0.04 || (vOutTexcoords.x) * (1.0 - vOutTexcoords.y) < 0.04 )";
  const std::string grassLeft =
      "    if ((abs(1.0 - vOutTexcoords.x)* vOutTexcoords.y) < 0.04 || abs(1.0 - vOutTexcoords.x) * (1.0 - vOutTexcoords.y) < 0.04 )";
  const std::string grassOther =
      "    if (( vOutTexcoords.x * vOutTexcoords.y) < 0.04|| vOutTexcoords.x * (1.0 - vOutTexcoords.y) < 0.04 )";
  ASSERT_NE(left.find(leftLine), std::string::npos);
  const struct {
    int eyeID, GrassType;
    const std::string& line;
  } cases[] = {{2, 1, rightLine}, {0, 1, rightLine}, {-7, 1, rightLine}, {1, 2, grassLeft}, {5, 2, grassOther}};
  for (const auto& c : cases) {
    std::string expected = left;
    expected.replace(expected.find(leftLine), leftLine.size(), c.line);
    EXPECT_EQ(FX::GetPS_VRMode(c.eyeID, c.GrassType), expected) << "eyeID " << c.eyeID << ", GrassType " << c.GrassType;
  }

  // Without a condition line there is no text.
  for (int GrassType : {0, 3, -1}) {
    EXPECT_THROW(FX::GetPS_VRMode(1, GrassType), ValueError) << "GrassType " << GrassType;
  }
}

}  // namespace
}  // namespace vorn
