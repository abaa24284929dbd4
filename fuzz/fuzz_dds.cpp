// libFuzzer target of the DDS reader and its format helpers.
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "core/errors.h"
#include "resource/dds_formats.h"
#include "resource/dds_reader.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const vorn::ImageLoadResult r = vorn::ReadDDS({data, size});
  if (r.image) {
    if (r.image->width() != r.width || r.image->height() != r.height) std::abort();
    if (r.image->data().size() != static_cast<std::size_t>(r.width) * r.height * r.image->bands()) std::abort();
  }
  // The helpers take any numbers a header can hold.
  if (const auto h = vorn::ParseDDSHeader({data, size})) {
    using F = vorn::Vorn_DXGI_FORMAT;
    const std::int64_t fmt = F::GetDXGIFormat(
        h->DDS_Header_PixelFormat_Flags, h->DDS_Header_PixelFormat_RGBBitCount, h->DDS_Header_PixelFormat_RBitMask,
        h->DDS_Header_PixelFormat_GBitMask, h->DDS_Header_PixelFormat_BBitMask, h->DDS_Header_PixelFormat_ABitMask,
        h->DDS_Header_PixelFormat_fourCC);
    try {
      F::GetSurfaceInfo(h->DDS_Header_Width, h->DDS_Header_Height, fmt);
      F::GetSurfaceInfo(h->DDS_Header_Reserved_Array[2] * std::int64_t{65536}, h->DDS_Header_Height,
                        h->DDS_Header_Reserved_Array[0]);
    } catch (const vorn::ValueError&) {
      // A byte size beyond 64 bits is refused, as documented.
    }
    F::BitsPerPixel(h->DDS_Header_Reserved_Array[1]);
  }
  return 0;
}
