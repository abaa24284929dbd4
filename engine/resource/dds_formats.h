#pragma once
// The texture format numbers of DDS files and the helpers that map a file's legacy
// pixel format to one and size its surfaces. Constants are the public enumeration's
// names and numbers; the classes are tables of constants, as scripts see them.
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace vorn {

// X(name, number) for every format constant, in enumeration order.
#define VORN_DXGI_FORMAT_LIST(X) \
  X(DXGI_FORMAT_UNKNOWN, 0) \
  X(DXGI_FORMAT_R32G32B32A32_TYPELESS, 1) \
  X(DXGI_FORMAT_R32G32B32A32_FLOAT, 2) \
  X(DXGI_FORMAT_R32G32B32A32_UINT, 3) \
  X(DXGI_FORMAT_R32G32B32A32_SINT, 4) \
  X(DXGI_FORMAT_R32G32B32_TYPELESS, 5) \
  X(DXGI_FORMAT_R32G32B32_FLOAT, 6) \
  X(DXGI_FORMAT_R32G32B32_UINT, 7) \
  X(DXGI_FORMAT_R32G32B32_SINT, 8) \
  X(DXGI_FORMAT_R16G16B16A16_TYPELESS, 9) \
  X(DXGI_FORMAT_R16G16B16A16_FLOAT, 10) \
  X(DXGI_FORMAT_R16G16B16A16_UNORM, 11) \
  X(DXGI_FORMAT_R16G16B16A16_UINT, 12) \
  X(DXGI_FORMAT_R16G16B16A16_SNORM, 13) \
  X(DXGI_FORMAT_R16G16B16A16_SINT, 14) \
  X(DXGI_FORMAT_R32G32_TYPELESS, 15) \
  X(DXGI_FORMAT_R32G32_FLOAT, 16) \
  X(DXGI_FORMAT_R32G32_UINT, 17) \
  X(DXGI_FORMAT_R32G32_SINT, 18) \
  X(DXGI_FORMAT_R32G8X24_TYPELESS, 19) \
  X(DXGI_FORMAT_D32_FLOAT_S8X24_UINT, 20) \
  X(DXGI_FORMAT_R32_FLOAT_X8X24_TYPELESS, 21) \
  X(DXGI_FORMAT_X32_TYPELESS_G8X24_UINT, 22) \
  X(DXGI_FORMAT_R10G10B10A2_TYPELESS, 23) \
  X(DXGI_FORMAT_R10G10B10A2_UNORM, 24) \
  X(DXGI_FORMAT_R10G10B10A2_UINT, 25) \
  X(DXGI_FORMAT_R11G11B10_FLOAT, 26) \
  X(DXGI_FORMAT_R8G8B8A8_TYPELESS, 27) \
  X(DXGI_FORMAT_R8G8B8A8_UNORM, 28) \
  X(DXGI_FORMAT_R8G8B8A8_UNORM_SRGB, 29) \
  X(DXGI_FORMAT_R8G8B8A8_UINT, 30) \
  X(DXGI_FORMAT_R8G8B8A8_SNORM, 31) \
  X(DXGI_FORMAT_R8G8B8A8_SINT, 32) \
  X(DXGI_FORMAT_R16G16_TYPELESS, 33) \
  X(DXGI_FORMAT_R16G16_FLOAT, 34) \
  X(DXGI_FORMAT_R16G16_UNORM, 35) \
  X(DXGI_FORMAT_R16G16_UINT, 36) \
  X(DXGI_FORMAT_R16G16_SNORM, 37) \
  X(DXGI_FORMAT_R16G16_SINT, 38) \
  X(DXGI_FORMAT_R32_TYPELESS, 39) \
  X(DXGI_FORMAT_D32_FLOAT, 40) \
  X(DXGI_FORMAT_R32_FLOAT, 41) \
  X(DXGI_FORMAT_R32_UINT, 42) \
  X(DXGI_FORMAT_R32_SINT, 43) \
  X(DXGI_FORMAT_R24G8_TYPELESS, 44) \
  X(DXGI_FORMAT_D24_UNORM_S8_UINT, 45) \
  X(DXGI_FORMAT_R24_UNORM_X8_TYPELESS, 46) \
  X(DXGI_FORMAT_X24_TYPELESS_G8_UINT, 47) \
  X(DXGI_FORMAT_R8G8_TYPELESS, 48) \
  X(DXGI_FORMAT_R8G8_UNORM, 49) \
  X(DXGI_FORMAT_R8G8_UINT, 50) \
  X(DXGI_FORMAT_R8G8_SNORM, 51) \
  X(DXGI_FORMAT_R8G8_SINT, 52) \
  X(DXGI_FORMAT_R16_TYPELESS, 53) \
  X(DXGI_FORMAT_R16_FLOAT, 54) \
  X(DXGI_FORMAT_D16_UNORM, 55) \
  X(DXGI_FORMAT_R16_UNORM, 56) \
  X(DXGI_FORMAT_R16_UINT, 57) \
  X(DXGI_FORMAT_R16_SNORM, 58) \
  X(DXGI_FORMAT_R16_SINT, 59) \
  X(DXGI_FORMAT_R8_TYPELESS, 60) \
  X(DXGI_FORMAT_R8_UNORM, 61) \
  X(DXGI_FORMAT_R8_UINT, 62) \
  X(DXGI_FORMAT_R8_SNORM, 63) \
  X(DXGI_FORMAT_R8_SINT, 64) \
  X(DXGI_FORMAT_A8_UNORM, 65) \
  X(DXGI_FORMAT_R1_UNORM, 66) \
  X(DXGI_FORMAT_R9G9B9E5_SHAREDEXP, 67) \
  X(DXGI_FORMAT_R8G8_B8G8_UNORM, 68) \
  X(DXGI_FORMAT_G8R8_G8B8_UNORM, 69) \
  X(DXGI_FORMAT_BC1_TYPELESS, 70) \
  X(DXGI_FORMAT_BC1_UNORM, 71) \
  X(DXGI_FORMAT_BC1_UNORM_SRGB, 72) \
  X(DXGI_FORMAT_BC2_TYPELESS, 73) \
  X(DXGI_FORMAT_BC2_UNORM, 74) \
  X(DXGI_FORMAT_BC2_UNORM_SRGB, 75) \
  X(DXGI_FORMAT_BC3_TYPELESS, 76) \
  X(DXGI_FORMAT_BC3_UNORM, 77) \
  X(DXGI_FORMAT_BC3_UNORM_SRGB, 78) \
  X(DXGI_FORMAT_BC4_TYPELESS, 79) \
  X(DXGI_FORMAT_BC4_UNORM, 80) \
  X(DXGI_FORMAT_BC4_SNORM, 81) \
  X(DXGI_FORMAT_BC5_TYPELESS, 82) \
  X(DXGI_FORMAT_BC5_UNORM, 83) \
  X(DXGI_FORMAT_BC5_SNORM, 84) \
  X(DXGI_FORMAT_B5G6R5_UNORM, 85) \
  X(DXGI_FORMAT_B5G5R5A1_UNORM, 86) \
  X(DXGI_FORMAT_B8G8R8A8_UNORM, 87) \
  X(DXGI_FORMAT_B8G8R8X8_UNORM, 88) \
  X(DXGI_FORMAT_R10G10B10_XR_BIAS_A2_UNORM, 89) \
  X(DXGI_FORMAT_B8G8R8A8_TYPELESS, 90) \
  X(DXGI_FORMAT_B8G8R8A8_UNORM_SRGB, 91) \
  X(DXGI_FORMAT_B8G8R8X8_TYPELESS, 92) \
  X(DXGI_FORMAT_B8G8R8X8_UNORM_SRGB, 93) \
  X(DXGI_FORMAT_BC6H_TYPELESS, 94) \
  X(DXGI_FORMAT_BC6H_UF16, 95) \
  X(DXGI_FORMAT_BC6H_SF16, 96) \
  X(DXGI_FORMAT_BC7_TYPELESS, 97) \
  X(DXGI_FORMAT_BC7_UNORM, 98) \
  X(DXGI_FORMAT_BC7_UNORM_SRGB, 99) \
  X(DXGI_FORMAT_AYUV, 100) \
  X(DXGI_FORMAT_Y410, 101) \
  X(DXGI_FORMAT_Y416, 102) \
  X(DXGI_FORMAT_NV12, 103) \
  X(DXGI_FORMAT_P010, 104) \
  X(DXGI_FORMAT_P016, 105) \
  X(DXGI_FORMAT_420_OPAQUE, 106) \
  X(DXGI_FORMAT_YUY2, 107) \
  X(DXGI_FORMAT_Y210, 108) \
  X(DXGI_FORMAT_Y216, 109) \
  X(DXGI_FORMAT_NV11, 110) \
  X(DXGI_FORMAT_AI44, 111) \
  X(DXGI_FORMAT_IA44, 112) \
  X(DXGI_FORMAT_P8, 113) \
  X(DXGI_FORMAT_A8P8, 114) \
  X(DXGI_FORMAT_B4G4R4A4_UNORM, 115) \
  X(DXGI_FORMAT_P208, 130) \
  X(DXGI_FORMAT_V208, 131) \
  X(DXGI_FORMAT_V408, 132) \
  X(DXGI_FORMAT_FORCE_UINT, 4294967295)

struct Vorn_DXGI_FORMAT {
#define VORN_DXGI_CONSTANT(name, value) static constexpr std::int64_t name = value;
  VORN_DXGI_FORMAT_LIST(VORN_DXGI_CONSTANT)
#undef VORN_DXGI_CONSTANT

  // Pixel-format flags of the DDS header.
  static constexpr std::int64_t DDS_FOURCC = 4;
  static constexpr std::int64_t DDS_RGB = 64;
  static constexpr std::int64_t DDS_LUMINANCE = 0x20000;
  static constexpr std::int64_t DDS_ALPHA = 2;

  // True when each mask equals its expected value.
  static bool CheckBitMask(std::int64_t RBitMask, std::int64_t r, std::int64_t GBitMask, std::int64_t g,
                           std::int64_t BBitMask, std::int64_t b, std::int64_t ABitMask, std::int64_t a);

  // The format of a legacy pixel format. Masks are compared as numbers, so a mask read
  // as a negative 32-bit value never equals a constant with the top bit set.
  static std::int64_t GetDXGIFormat(std::int64_t flags, std::int64_t RGBBitCount, std::int64_t RBitMask,
                                    std::int64_t GBGitMask, std::int64_t BBitMask, std::int64_t ABitMask,
                                    std::string_view fourCC);

  // Bits per pixel of a format; 0 for an unknown one.
  static int BitsPerPixel(std::int64_t fmt);

  struct SurfaceInfo {
    std::int64_t numBytes = 0;
    std::int64_t rowBytes = 0;
    std::int64_t numRows = 0;
  };
  // Byte size, row size and row count of one surface of the format; ValueError when
  // the byte size doesn't fit in 64 bits.
  static SurfaceInfo GetSurfaceInfo(std::int64_t width, std::int64_t height, std::int64_t fmt);

  // Every constant of the class by name, in declaration order.
  static const std::vector<std::pair<const char*, std::int64_t>>& Constants();
};

struct Vorn_DX11_RESOURCE_DIMENSION {
  static constexpr std::int64_t D3D11_RESOURCE_DIMENSION_UNKNOWN = 0;
  static constexpr std::int64_t D3D11_RESOURCE_DIMENSION_BUFFER = 1;
  static constexpr std::int64_t D3D11_RESOURCE_DIMENSION_TEXTURE1D = 2;
  static constexpr std::int64_t D3D11_RESOURCE_DIMENSION_TEXTURE2D = 3;
  static constexpr std::int64_t D3D11_RESOURCE_DIMENSION_TEXTURE3D = 4;
  static const std::vector<std::pair<const char*, std::int64_t>>& Constants();
};

struct Vorn_DX12_RESOURCE_DIMENSION {
  static constexpr std::int64_t D3D12_RESOURCE_DIMENSION_UNKNOWN = 0;
  static constexpr std::int64_t D3D12_RESOURCE_DIMENSION_BUFFER = 1;
  static constexpr std::int64_t D3D12_RESOURCE_DIMENSION_TEXTURE1D = 2;
  static constexpr std::int64_t D3D12_RESOURCE_DIMENSION_TEXTURE2D = 3;
  static constexpr std::int64_t D3D12_RESOURCE_DIMENSION_TEXTURE3D = 4;
  static const std::vector<std::pair<const char*, std::int64_t>>& Constants();
};

struct Vorn_DDS_CUBE {
  static constexpr std::int64_t DDS_CUBEMAP_POSITIVEX = 1536;
  static constexpr std::int64_t DDS_CUBEMAP_NEGATIVEX = 2560;
  static constexpr std::int64_t DDS_CUBEMAP_POSITIVEY = 4608;
  static constexpr std::int64_t DDS_CUBEMAP_NEGATIVEY = 8704;
  static constexpr std::int64_t DDS_CUBEMAP_POSITIVEZ = 16896;
  static constexpr std::int64_t DDS_CUBEMAP_NEGATIVEZ = 33280;
  static constexpr std::int64_t DDS_CUBEMAP_ALLFACES = DDS_CUBEMAP_POSITIVEX | DDS_CUBEMAP_NEGATIVEX |
                                                       DDS_CUBEMAP_POSITIVEY | DDS_CUBEMAP_NEGATIVEY |
                                                       DDS_CUBEMAP_POSITIVEZ | DDS_CUBEMAP_NEGATIVEZ;
  static constexpr std::int64_t DDS_CUBEMAP = 512;
  static const std::vector<std::pair<const char*, std::int64_t>>& Constants();
};

}  // namespace vorn
