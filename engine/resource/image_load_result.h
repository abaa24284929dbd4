#pragma once
// The record every image reader returns: (image, width, height, flag).
#include <memory>

#include "resource/image.h"

namespace vorn {

struct ImageLoadResult {
  // Null when nothing was decoded.
  std::shared_ptr<Image> image;
  int width = 0;
  int height = 0;
  // The reader's alpha flag (`IsRGBA` of the TGA and DDS readers); false for PNG and JPG.
  bool flag = false;
  // The DDS reader's refusal of too many mip levels has three fields, (nothing, 0, 0),
  // with no flag; scripts see a tuple of three.
  bool has_flag = true;

  // (nothing, 0, 0, false): the answer for every file that cannot be read.
  static ImageLoadResult Failure() { return {}; }
  // (nothing, 0, 0).
  static ImageLoadResult ShortFailure() {
    ImageLoadResult r;
    r.has_flag = false;
    return r;
  }
  bool failed() const { return !image && width == 0 && height == 0 && !flag; }
};

}  // namespace vorn
