#include "resource/bump_image.h"

#include <algorithm>
#include <cstdint>
#include <vector>

#include "core/vector3.h"

namespace vorn {

std::shared_ptr<Image> MakeBumpNormalMap(const Image& picture) {
  const int width = picture.width();
  const int height = picture.height();
  const int bands = picture.bands();
  auto bumpImage = std::make_shared<Image>(Image::Mode::RGB, width, height);
  // The brightness of the row above, one per column.
  std::vector<int> bump_h_array(static_cast<std::size_t>(width), 0);
  const std::uint8_t* src = picture.data().data();
  std::uint8_t* dst = bumpImage->data().data();

  for (int y = 0; y < height; ++y) {
    int bump_w_last = 0;
    for (int x = 0; x < width; ++x, src += bands, dst += 3) {
      const int R = src[0];
      const int G = bands >= 3 ? src[1] : R;
      const int B = bands >= 3 ? src[2] : R;
      const int gray = std::clamp(static_cast<int>(R * 0.2989 + G * 0.587 + B * 0.114), 0, 255);
      int& above = bump_h_array[static_cast<std::size_t>(x)];
      const double slopeV = y == 0 ? 0.0 : (gray - above) / 512.0;
      const double slopeH = x == 0 ? 0.0 : (gray - bump_w_last) / 512.0;
      above = gray;
      bump_w_last = gray;

      const Vector3 HVec3(1.0, 0.0, slopeH);
      const Vector3 VVec3(0.0, 1.0, slopeV);
      Vector3 NVec3 = HVec3.cross(VVec3);
      NVec3.normalize();
      // The encoding holds 0..1 in R and G: the negative side of x and y is dropped.
      const double nx = std::max(NVec3.x, 0.0);
      const double ny = std::max(NVec3.y, 0.0);
      const double nz = std::max(NVec3.z, 0.0);
      dst[0] = static_cast<std::uint8_t>(static_cast<int>(nx * 255));
      dst[1] = static_cast<std::uint8_t>(static_cast<int>(ny * 255));
      dst[2] = static_cast<std::uint8_t>(static_cast<int>((nz + 1.0) * 0.5 * 255));
    }
  }
  return bumpImage;
}

}  // namespace vorn
