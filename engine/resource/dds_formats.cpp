#include "resource/dds_formats.h"

#include <algorithm>
#include <limits>

#include "core/errors.h"

namespace vorn {

namespace {

using F = Vorn_DXGI_FORMAT;

// Surface sizes are worked out in 128 bits: any two 64-bit inputs fit, and a result
// that doesn't fit 64 bits is refused instead of wrapping.
using Wide = __int128;

// Python's floor division, so negative sizes give the same numbers as in a script.
Wide floor_div(Wide a, Wide b) {
  Wide q = a / b;
  if ((a % b != 0) && ((a < 0) != (b < 0))) --q;
  return q;
}

bool is_ascii_digits(std::string_view text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), [](char ch) { return ch >= '0' && ch <= '9'; });
}

}  // namespace

bool Vorn_DXGI_FORMAT::CheckBitMask(std::int64_t RBitMask, std::int64_t r, std::int64_t GBitMask, std::int64_t g,
                                    std::int64_t BBitMask, std::int64_t b, std::int64_t ABitMask, std::int64_t a) {
  return RBitMask == r && GBitMask == g && BBitMask == b && ABitMask == a;
}

std::int64_t Vorn_DXGI_FORMAT::GetDXGIFormat(std::int64_t flags, std::int64_t RGBBitCount, std::int64_t R,
                                             std::int64_t G, std::int64_t B, std::int64_t A, std::string_view fourCC) {
  const auto masks = [&](std::int64_t r, std::int64_t g, std::int64_t b, std::int64_t a) {
    return CheckBitMask(R, r, G, g, B, b, A, a);
  };
  // The first flag group present decides; a pixel format that matches none of its rows
  // has no format, whatever other flags it carries.
  if (flags & DDS_RGB) {
    if (RGBBitCount == 32) {
      if (masks(0xff, 0xff00, 0xff0000, 0xff000000)) return DXGI_FORMAT_R8G8B8A8_UNORM;
      if (masks(0xff0000, 0xff00, 0xff, 0xff000000)) return DXGI_FORMAT_B8G8R8A8_UNORM;
      if (masks(0xff0000, 0xff00, 0xff, 0)) return DXGI_FORMAT_B8G8R8X8_UNORM;
      if (masks(0x3ff00000, 0xffc00, 0x3ff, 0xc0000000)) return DXGI_FORMAT_R10G10B10A2_UNORM;
      if (masks(0xffff, 0xffff0000, 0, 0)) return DXGI_FORMAT_R16G16_UNORM;
      if (masks(0xffffffff, 0, 0, 0)) return DXGI_FORMAT_R32_FLOAT;
    } else if (RGBBitCount == 16) {
      if (masks(0x7c00, 0x3e0, 0x1f, 0x8000)) return DXGI_FORMAT_B5G5R5A1_UNORM;
      if (masks(0xf800, 0x7e0, 0x1f, 0)) return DXGI_FORMAT_B5G6R5_UNORM;
      if (masks(0xf00, 0xf0, 0xf, 0xf000)) return DXGI_FORMAT_B4G4R4A4_UNORM;
    }
  } else if (flags & DDS_LUMINANCE) {
    if (RGBBitCount == 8 && masks(0xff, 0, 0, 0)) return DXGI_FORMAT_R8_UNORM;
    if (RGBBitCount == 16) {
      if (masks(0xffff, 0, 0, 0)) return DXGI_FORMAT_R16_UNORM;
      if (masks(0xff, 0, 0, 0xff00)) return DXGI_FORMAT_R8G8_UNORM;
    }
  } else if (flags & DDS_ALPHA) {
    if (RGBBitCount == 8) return DXGI_FORMAT_A8_UNORM;
  } else if (flags & DDS_FOURCC) {
    if (fourCC == "DXT1") return DXGI_FORMAT_BC1_UNORM;
    if (fourCC == "DXT2" || fourCC == "DXT3") return DXGI_FORMAT_BC2_UNORM;
    if (fourCC == "DXT4" || fourCC == "DXT5") return DXGI_FORMAT_BC3_UNORM;
    if (fourCC == "ATI1" || fourCC == "BC4U") return DXGI_FORMAT_BC4_UNORM;
    if (fourCC == "BC4S") return DXGI_FORMAT_BC4_SNORM;
    if (fourCC == "ATI2" || fourCC == "BC5U") return DXGI_FORMAT_BC5_UNORM;
    if (fourCC == "BC5S") return DXGI_FORMAT_BC5_SNORM;
    if (fourCC == "RGBG") return DXGI_FORMAT_R8G8_B8G8_UNORM;
    if (fourCC == "GRGB") return DXGI_FORMAT_G8R8_G8B8_UNORM;
    if (fourCC == "YUY2") return DXGI_FORMAT_YUY2;
    // A fourCC written as decimal text names a legacy format number.
    if (is_ascii_digits(fourCC)) {
      std::int64_t number = 0;
      for (char ch : fourCC) number = number * 10 + (ch - '0');
      switch (number) {
        case 36:
          return DXGI_FORMAT_R16G16B16A16_UNORM;
        case 110:
          return DXGI_FORMAT_R16G16B16A16_SNORM;
        case 111:
          return DXGI_FORMAT_R16_FLOAT;
        case 112:
          return DXGI_FORMAT_R16G16_FLOAT;
        case 113:
          return DXGI_FORMAT_R16G16B16A16_FLOAT;
        case 114:
          return DXGI_FORMAT_R32_FLOAT;
        case 115:
          return DXGI_FORMAT_R32G32_FLOAT;
        case 116:
          return DXGI_FORMAT_R32G32B32A32_FLOAT;
        default:
          break;
      }
    }
  }
  return DXGI_FORMAT_UNKNOWN;
}

int Vorn_DXGI_FORMAT::BitsPerPixel(std::int64_t fmt) {
  if (fmt >= F::DXGI_FORMAT_R32G32B32A32_TYPELESS && fmt <= F::DXGI_FORMAT_R32G32B32A32_SINT) return 128;
  if (fmt >= F::DXGI_FORMAT_R32G32B32_TYPELESS && fmt <= F::DXGI_FORMAT_R32G32B32_SINT) return 96;
  if (fmt >= F::DXGI_FORMAT_R16G16B16A16_TYPELESS && fmt <= F::DXGI_FORMAT_X32_TYPELESS_G8X24_UINT) return 64;
  if (fmt >= F::DXGI_FORMAT_R10G10B10A2_TYPELESS && fmt <= F::DXGI_FORMAT_X24_TYPELESS_G8_UINT) return 32;
  if (fmt >= F::DXGI_FORMAT_R8G8_TYPELESS && fmt <= F::DXGI_FORMAT_R16_SINT) return 16;
  if (fmt >= F::DXGI_FORMAT_R8_TYPELESS && fmt <= F::DXGI_FORMAT_A8_UNORM) return 8;
  if (fmt >= F::DXGI_FORMAT_BC2_TYPELESS && fmt <= F::DXGI_FORMAT_BC3_UNORM_SRGB) return 8;
  if (fmt >= F::DXGI_FORMAT_BC5_TYPELESS && fmt <= F::DXGI_FORMAT_BC5_SNORM) return 8;
  if (fmt >= F::DXGI_FORMAT_BC6H_TYPELESS && fmt <= F::DXGI_FORMAT_BC7_UNORM_SRGB) return 8;
  if (fmt >= F::DXGI_FORMAT_BC1_TYPELESS && fmt <= F::DXGI_FORMAT_BC1_UNORM_SRGB) return 4;
  if (fmt >= F::DXGI_FORMAT_BC4_TYPELESS && fmt <= F::DXGI_FORMAT_BC4_SNORM) return 4;
  if (fmt >= F::DXGI_FORMAT_B8G8R8A8_UNORM && fmt <= F::DXGI_FORMAT_B8G8R8X8_UNORM_SRGB) return 32;
  switch (fmt) {
    case F::DXGI_FORMAT_R9G9B9E5_SHAREDEXP:
    case F::DXGI_FORMAT_R8G8_B8G8_UNORM:
    case F::DXGI_FORMAT_G8R8_G8B8_UNORM:
    case F::DXGI_FORMAT_AYUV:
    case F::DXGI_FORMAT_Y410:
    case F::DXGI_FORMAT_YUY2:
      return 32;
    case F::DXGI_FORMAT_Y416:
    case F::DXGI_FORMAT_Y210:
    case F::DXGI_FORMAT_Y216:
      return 64;
    case F::DXGI_FORMAT_P010:
    case F::DXGI_FORMAT_P016:
    case F::DXGI_FORMAT_V408:
      return 24;
    case F::DXGI_FORMAT_B5G6R5_UNORM:
    case F::DXGI_FORMAT_B5G5R5A1_UNORM:
    case F::DXGI_FORMAT_A8P8:
    case F::DXGI_FORMAT_B4G4R4A4_UNORM:
    case F::DXGI_FORMAT_P208:
    case F::DXGI_FORMAT_V208:
      return 16;
    case F::DXGI_FORMAT_NV12:
    case F::DXGI_FORMAT_420_OPAQUE:
    case F::DXGI_FORMAT_NV11:
      return 12;
    case F::DXGI_FORMAT_AI44:
    case F::DXGI_FORMAT_IA44:
    case F::DXGI_FORMAT_P8:
      return 8;
    case F::DXGI_FORMAT_R1_UNORM:
      return 1;
    default:
      return 0;
  }
}

Vorn_DXGI_FORMAT::SurfaceInfo Vorn_DXGI_FORMAT::GetSurfaceInfo(std::int64_t width64, std::int64_t height64,
                                                               std::int64_t fmt) {
  struct {
    Wide rowBytes = 0, numRows = 0;
  } info;
  Wide bpe = 0;
  const Wide width = width64, height = height64;
  enum class Kind { Block, Packed, NV11, Planar, Plain } kind = Kind::Plain;
  switch (fmt) {
    case F::DXGI_FORMAT_BC1_TYPELESS:
    case F::DXGI_FORMAT_BC1_UNORM:
    case F::DXGI_FORMAT_BC1_UNORM_SRGB:
    case F::DXGI_FORMAT_BC4_TYPELESS:
    case F::DXGI_FORMAT_BC4_UNORM:
    case F::DXGI_FORMAT_BC4_SNORM:
      kind = Kind::Block;
      bpe = 8;
      break;
    case F::DXGI_FORMAT_BC2_TYPELESS:
    case F::DXGI_FORMAT_BC2_UNORM:
    case F::DXGI_FORMAT_BC2_UNORM_SRGB:
    case F::DXGI_FORMAT_BC3_TYPELESS:
    case F::DXGI_FORMAT_BC3_UNORM:
    case F::DXGI_FORMAT_BC3_UNORM_SRGB:
    case F::DXGI_FORMAT_BC5_TYPELESS:
    case F::DXGI_FORMAT_BC5_UNORM:
    case F::DXGI_FORMAT_BC5_SNORM:
    case F::DXGI_FORMAT_BC6H_TYPELESS:
    case F::DXGI_FORMAT_BC6H_UF16:
    case F::DXGI_FORMAT_BC6H_SF16:
    case F::DXGI_FORMAT_BC7_TYPELESS:
    case F::DXGI_FORMAT_BC7_UNORM:
    case F::DXGI_FORMAT_BC7_UNORM_SRGB:
      kind = Kind::Block;
      bpe = 16;
      break;
    case F::DXGI_FORMAT_R8G8_B8G8_UNORM:
    case F::DXGI_FORMAT_G8R8_G8B8_UNORM:
    case F::DXGI_FORMAT_YUY2:
      kind = Kind::Packed;
      bpe = 4;
      break;
    case F::DXGI_FORMAT_Y210:
    case F::DXGI_FORMAT_Y216:
      kind = Kind::Packed;
      bpe = 8;
      break;
    case F::DXGI_FORMAT_NV11:
      kind = Kind::NV11;
      break;
    case F::DXGI_FORMAT_NV12:
    case F::DXGI_FORMAT_420_OPAQUE:
      kind = Kind::Planar;
      bpe = 2;
      break;
    case F::DXGI_FORMAT_P010:
    case F::DXGI_FORMAT_P016:
      kind = Kind::Planar;
      bpe = 4;
      break;
    default:
      break;
  }

  switch (kind) {
    case Kind::Block: {
      const Wide wide = width > 0 ? std::max<Wide>(1, floor_div(width + 3, 4)) : 0;
      const Wide high = height > 0 ? std::max<Wide>(1, floor_div(height + 3, 4)) : 0;
      info.rowBytes = wide * bpe;
      info.numRows = high;
      break;
    }
    case Kind::Packed:
      info.rowBytes = floor_div(width + 1, 2) * bpe;
      info.numRows = height;
      break;
    case Kind::NV11:
      info.rowBytes = floor_div(width + 3, 4) * 4;
      info.numRows = height * 2;
      break;
    case Kind::Planar:
      info.rowBytes = floor_div(width + 1, 2) * bpe;
      info.numRows = height + floor_div(height + 1, 2);
      break;
    case Kind::Plain:
      info.rowBytes = floor_div(width * BitsPerPixel(fmt) + 7, 8);
      info.numRows = height;
      break;
  }
  const Wide numBytes = info.rowBytes * info.numRows;
  const auto fits = [](Wide v) {
    return v >= std::numeric_limits<std::int64_t>::min() && v <= std::numeric_limits<std::int64_t>::max();
  };
  if (!fits(numBytes) || !fits(info.rowBytes) || !fits(info.numRows)) {
    throw ValueError("Vorn_DXGI_FORMAT.GetSurfaceInfo: the surface size does not fit in 64 bits");
  }
  return {static_cast<std::int64_t>(numBytes), static_cast<std::int64_t>(info.rowBytes),
          static_cast<std::int64_t>(info.numRows)};
}

const std::vector<std::pair<const char*, std::int64_t>>& Vorn_DXGI_FORMAT::Constants() {
  static const std::vector<std::pair<const char*, std::int64_t>> constants = {
#define VORN_DXGI_ENTRY(name, value) {#name, value},
      VORN_DXGI_FORMAT_LIST(VORN_DXGI_ENTRY)
#undef VORN_DXGI_ENTRY
      {"DDS_FOURCC", DDS_FOURCC},
      {"DDS_RGB", DDS_RGB},
      {"DDS_LUMINANCE", DDS_LUMINANCE},
      {"DDS_ALPHA", DDS_ALPHA},
  };
  return constants;
}

const std::vector<std::pair<const char*, std::int64_t>>& Vorn_DX11_RESOURCE_DIMENSION::Constants() {
  static const std::vector<std::pair<const char*, std::int64_t>> constants = {
      {"D3D11_RESOURCE_DIMENSION_UNKNOWN", D3D11_RESOURCE_DIMENSION_UNKNOWN},
      {"D3D11_RESOURCE_DIMENSION_BUFFER", D3D11_RESOURCE_DIMENSION_BUFFER},
      {"D3D11_RESOURCE_DIMENSION_TEXTURE1D", D3D11_RESOURCE_DIMENSION_TEXTURE1D},
      {"D3D11_RESOURCE_DIMENSION_TEXTURE2D", D3D11_RESOURCE_DIMENSION_TEXTURE2D},
      {"D3D11_RESOURCE_DIMENSION_TEXTURE3D", D3D11_RESOURCE_DIMENSION_TEXTURE3D},
  };
  return constants;
}

const std::vector<std::pair<const char*, std::int64_t>>& Vorn_DX12_RESOURCE_DIMENSION::Constants() {
  static const std::vector<std::pair<const char*, std::int64_t>> constants = {
      {"D3D12_RESOURCE_DIMENSION_UNKNOWN", D3D12_RESOURCE_DIMENSION_UNKNOWN},
      {"D3D12_RESOURCE_DIMENSION_BUFFER", D3D12_RESOURCE_DIMENSION_BUFFER},
      {"D3D12_RESOURCE_DIMENSION_TEXTURE1D", D3D12_RESOURCE_DIMENSION_TEXTURE1D},
      {"D3D12_RESOURCE_DIMENSION_TEXTURE2D", D3D12_RESOURCE_DIMENSION_TEXTURE2D},
      {"D3D12_RESOURCE_DIMENSION_TEXTURE3D", D3D12_RESOURCE_DIMENSION_TEXTURE3D},
  };
  return constants;
}

const std::vector<std::pair<const char*, std::int64_t>>& Vorn_DDS_CUBE::Constants() {
  static const std::vector<std::pair<const char*, std::int64_t>> constants = {
      {"DDS_CUBEMAP_POSITIVEX", DDS_CUBEMAP_POSITIVEX}, {"DDS_CUBEMAP_NEGATIVEX", DDS_CUBEMAP_NEGATIVEX},
      {"DDS_CUBEMAP_POSITIVEY", DDS_CUBEMAP_POSITIVEY}, {"DDS_CUBEMAP_NEGATIVEY", DDS_CUBEMAP_NEGATIVEY},
      {"DDS_CUBEMAP_POSITIVEZ", DDS_CUBEMAP_POSITIVEZ}, {"DDS_CUBEMAP_NEGATIVEZ", DDS_CUBEMAP_NEGATIVEZ},
      {"DDS_CUBEMAP_ALLFACES", DDS_CUBEMAP_ALLFACES},   {"DDS_CUBEMAP", DDS_CUBEMAP},
  };
  return constants;
}

}  // namespace vorn
