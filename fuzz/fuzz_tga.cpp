// libFuzzer target of the TGA reader: any bytes give an image or the failure value.
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "resource/tga_reader.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const vorn::ImageLoadResult r = vorn::ReadTGA({data, size});
  if (r.image) {
    // The record agrees with the image, and every pixel is readable.
    if (r.image->width() != r.width || r.image->height() != r.height || !r.flag) std::abort();
    if (r.image->data().size() != static_cast<std::size_t>(r.width) * r.height * 4) std::abort();
  } else if (!r.failed()) {
    std::abort();
  }
  return 0;
}
