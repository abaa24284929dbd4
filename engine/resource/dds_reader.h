#pragma once
// The DDS reader: BC1, BC2 and BC3 surfaces decoded in software into an ordinary image.
#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "resource/image_load_result.h"
#include "resource/image_path.h"

namespace vorn {

// The header as read: signed 32-bit little-endian fields after the magic "DDS ".
struct DDSHeader {
  std::int32_t DDS_Header_Size = 0;
  std::int32_t DDS_Header_Flags = 0;
  std::int32_t DDS_Header_Height = 0;
  std::int32_t DDS_Header_Width = 0;
  std::int32_t DDS_Header_PitchOrLinearSize = 0;
  std::int32_t DDS_Header_Depth = 0;
  std::int32_t DDS_Header_MipMapCount = 0;
  std::int32_t DDS_Header_Reserved_Array[11] = {};
  std::int32_t DDS_Header_PixelFormat_Size = 0;
  std::int32_t DDS_Header_PixelFormat_Flags = 0;
  std::string DDS_Header_PixelFormat_fourCC;  // the four bytes as UTF-8 text
  std::int32_t DDS_Header_PixelFormat_RGBBitCount = 0;
  std::int32_t DDS_Header_PixelFormat_RBitMask = 0;
  std::int32_t DDS_Header_PixelFormat_GBitMask = 0;
  std::int32_t DDS_Header_PixelFormat_BBitMask = 0;
  std::int32_t DDS_Header_PixelFormat_ABitMask = 0;
  std::int32_t DDS_Header_Caps1 = 0;
  std::int32_t DDS_Header_Caps2 = 0;
  std::int32_t DDS_Header_Caps3 = 0;
  std::int32_t DDS_Header_Caps4 = 0;
  std::int32_t DDS_Header_Reserved2 = 0;
};
// Magic and header together.
inline constexpr std::size_t kDDSHeaderEnd = 128;
// The extra header of files whose fourCC is "DX10".
inline constexpr std::size_t kDDSDX10HeaderSize = 20;
// Header flag of a volume texture.
inline constexpr std::int64_t kDDSFlagVolume = 0x800000;

// Magic and header of a file; nothing when the magic is wrong, the file is shorter
// than the header, or the fourCC isn't valid UTF-8.
std::optional<DDSHeader> ParseDDSHeader(std::span<const std::uint8_t> bytes);

// Decodes a DDS held in memory into (image, width, height, IsRGBA):
// - BC1 gives "RGB" and false; BC2 and BC3 give "RGBA" and true.
// - Every array slice and mip level is decoded at the full size from consecutive
//   data and the last one is kept, so a file with mips usually runs past its end.
// - Other formats decode nothing: (nothing, width, height, false).
// - Failure value (nothing, 0, 0, false): bad magic, short header, DX10 header, a cube
//   map without all six faces, sizes above 16384, block data past the end of the file,
//   a negative size, or a size that is not a multiple of 4.
// - (nothing, 0, 0) without a flag: more than 15 mip levels.
ImageLoadResult ReadDDS(std::span<const std::uint8_t> bytes);

// LoadDDS(fileName): the file by name, looked up through `lookup` when it doesn't exist.
ImageLoadResult LoadDDS(const std::string& fileName, const ResPathLookup& lookup = {});

}  // namespace vorn
