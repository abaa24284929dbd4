#include "resource/dds_reader.h"

#include <cstring>
#include <new>

#include "resource/bc_decode.h"
#include "resource/dds_formats.h"

namespace vorn {

namespace {

std::int32_t read_i32(const std::uint8_t* p) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(p[0]) | (static_cast<std::uint32_t>(p[1]) << 8) |
                                   (static_cast<std::uint32_t>(p[2]) << 16) |
                                   (static_cast<std::uint32_t>(p[3]) << 24));
}

// Strict UTF-8 as a script's decoder checks it: no overlong forms, no surrogates,
// nothing above U+10FFFF, no truncated sequence.
bool is_valid_utf8(const std::uint8_t* s, std::size_t n) {
  std::size_t i = 0;
  while (i < n) {
    const std::uint8_t c = s[i];
    std::size_t len = 0;
    std::uint8_t lo = 0x80, hi = 0xBF;
    if (c < 0x80) {
      ++i;
      continue;
    } else if (c >= 0xC2 && c <= 0xDF) {
      len = 1;
    } else if (c >= 0xE0 && c <= 0xEF) {
      len = 2;
      if (c == 0xE0) lo = 0xA0;
      if (c == 0xED) hi = 0x9F;
    } else if (c >= 0xF0 && c <= 0xF4) {
      len = 3;
      if (c == 0xF0) lo = 0x90;
      if (c == 0xF4) hi = 0x8F;
    } else {
      return false;
    }
    if (i + len >= n) return false;
    if (s[i + 1] < lo || s[i + 1] > hi) return false;
    for (std::size_t k = 2; k <= len; ++k) {
      if (s[i + k] < 0x80 || s[i + k] > 0xBF) return false;
    }
    i += len + 1;
  }
  return true;
}

std::optional<BCKind> block_kind(std::int64_t fmt) {
  using F = Vorn_DXGI_FORMAT;
  if (fmt >= F::DXGI_FORMAT_BC1_TYPELESS && fmt <= F::DXGI_FORMAT_BC1_UNORM_SRGB) return BCKind::BC1;
  if (fmt >= F::DXGI_FORMAT_BC2_TYPELESS && fmt <= F::DXGI_FORMAT_BC2_UNORM_SRGB) return BCKind::BC2;
  if (fmt >= F::DXGI_FORMAT_BC3_TYPELESS && fmt <= F::DXGI_FORMAT_BC3_UNORM_SRGB) return BCKind::BC3;
  return std::nullopt;
}

}  // namespace

std::optional<DDSHeader> ParseDDSHeader(std::span<const std::uint8_t> bytes) {
  if (bytes.size() < 4 || std::memcmp(bytes.data(), "DDS ", 4) != 0) return std::nullopt;
  if (bytes.size() < kDDSHeaderEnd) return std::nullopt;
  const std::uint8_t* p = bytes.data() + 4;
  const auto next = [&p] {
    const std::int32_t v = read_i32(p);
    p += 4;
    return v;
  };
  DDSHeader h;
  h.DDS_Header_Size = next();
  h.DDS_Header_Flags = next();
  h.DDS_Header_Height = next();
  h.DDS_Header_Width = next();
  h.DDS_Header_PitchOrLinearSize = next();
  h.DDS_Header_Depth = next();
  h.DDS_Header_MipMapCount = next();
  for (std::int32_t& r : h.DDS_Header_Reserved_Array) r = next();
  h.DDS_Header_PixelFormat_Size = next();
  h.DDS_Header_PixelFormat_Flags = next();
  if (!is_valid_utf8(p, 4)) return std::nullopt;
  h.DDS_Header_PixelFormat_fourCC.assign(reinterpret_cast<const char*>(p), 4);
  p += 4;
  h.DDS_Header_PixelFormat_RGBBitCount = next();
  h.DDS_Header_PixelFormat_RBitMask = next();
  h.DDS_Header_PixelFormat_GBitMask = next();
  h.DDS_Header_PixelFormat_BBitMask = next();
  h.DDS_Header_PixelFormat_ABitMask = next();
  h.DDS_Header_Caps1 = next();
  h.DDS_Header_Caps2 = next();
  h.DDS_Header_Caps3 = next();
  h.DDS_Header_Caps4 = next();
  h.DDS_Header_Reserved2 = next();
  return h;
}

ImageLoadResult ReadDDS(std::span<const std::uint8_t> bytes) {
  using F = Vorn_DXGI_FORMAT;
  const std::optional<DDSHeader> header = ParseDDSHeader(bytes);
  if (!header) return ImageLoadResult::Failure();
  const DDSHeader& h = *header;

  // A DX10 header leaves the resource dimension unknown: such files don't load.
  if ((h.DDS_Header_PixelFormat_Flags & F::DDS_FOURCC) && h.DDS_Header_PixelFormat_fourCC == "DX10") {
    return ImageLoadResult::Failure();
  }
  const std::int64_t DXFormat = F::GetDXGIFormat(
      h.DDS_Header_PixelFormat_Flags, h.DDS_Header_PixelFormat_RGBBitCount, h.DDS_Header_PixelFormat_RBitMask,
      h.DDS_Header_PixelFormat_GBitMask, h.DDS_Header_PixelFormat_BBitMask, h.DDS_Header_PixelFormat_ABitMask,
      h.DDS_Header_PixelFormat_fourCC);

  // Resource dimension and array size.
  std::int64_t arraySize = 1;
  const bool volume = (h.DDS_Header_Flags & kDDSFlagVolume) != 0;
  if (!volume && (h.DDS_Header_Caps2 & Vorn_DDS_CUBE::DDS_CUBEMAP)) {
    if ((h.DDS_Header_Caps2 & Vorn_DDS_CUBE::DDS_CUBEMAP_ALLFACES) != Vorn_DDS_CUBE::DDS_CUBEMAP_ALLFACES) {
      return ImageLoadResult::Failure();
    }
    arraySize = 6;
  }
  const std::int64_t width = h.DDS_Header_Width, height = h.DDS_Header_Height;
  if (width > 16384 || height > 16384) return ImageLoadResult::Failure();

  std::int64_t mipCount = h.DDS_Header_MipMapCount == 0 ? 1 : h.DDS_Header_MipMapCount;
  if (mipCount > 15) return ImageLoadResult::ShortFailure();

  ImageLoadResult result;
  result.width = static_cast<int>(width);
  result.height = static_cast<int>(height);
  const std::optional<BCKind> kind = block_kind(DXFormat);
  const std::int64_t passes = mipCount > 0 ? arraySize * mipCount : 0;
  if (!kind || passes == 0) return result;

  // Every pass reads a full-size surface; only the last one is kept.
  if (width < 0 || height < 0) return ImageLoadResult::Failure();
  const std::int64_t tiles = ((width + 3) / 4) * ((height + 3) / 4);
  const std::int64_t surface_bytes = tiles * static_cast<std::int64_t>(BCBlockBytes(*kind));
  const std::int64_t available = static_cast<std::int64_t>(bytes.size() - kDDSHeaderEnd);
  if (available < passes * surface_bytes) return ImageLoadResult::Failure();
  // Blocks that reach past the right or bottom edge make the decode fail.
  if (tiles > 0 && (width % 4 != 0 || height % 4 != 0)) return ImageLoadResult::Failure();

  try {
    auto image = std::make_shared<Image>(BCImageMode(*kind), width, height);
    const std::uint8_t* last = bytes.data() + kDDSHeaderEnd + (passes - 1) * surface_bytes;
    DecodeBCSurface(*kind, last, *image);
    result.image = std::move(image);
    result.flag = *kind != BCKind::BC1;
    return result;
  } catch (const std::bad_alloc&) {
    return ImageLoadResult::Failure();
  }
}

ImageLoadResult LoadDDS(const std::string& fileName, const ResPathLookup& lookup) {
  const std::optional<std::string> path = ResolveImagePath(fileName, std::nullopt, lookup);
  if (!path) return ImageLoadResult::Failure();
  const std::optional<std::vector<std::uint8_t>> bytes = ReadWholeFile(*path);
  if (!bytes) return ImageLoadResult::Failure();
  return ReadDDS(*bytes);
}

}  // namespace vorn
