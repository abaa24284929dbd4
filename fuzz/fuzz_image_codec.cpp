// libFuzzer target of the PNG and JPG entry: bytes are decoded by their signature.
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "resource/image_file_loader.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto image = vorn::DecodeImageBytes({data, size});
  if (image && image->data().size() != static_cast<std::size_t>(image->width()) * image->height() * image->bands()) {
    std::abort();
  }
  return 0;
}
