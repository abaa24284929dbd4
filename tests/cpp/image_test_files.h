#pragma once
// Builders of small image files for the reader tests, and a private temporary folder.
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace vorn::test {

using Bytes = std::vector<std::uint8_t>;

// A folder of its own under the system's temporary directory, removed at the end.
class TempDir {
 public:
  TempDir() {
    static int counter = 0;
    path_ = std::filesystem::temp_directory_path() /
            ("vorn_images_" + std::to_string(::getpid()) + "_" + std::to_string(counter++));
    std::filesystem::create_directories(path_);
  }
  ~TempDir() {
    std::error_code ec;
    std::filesystem::remove_all(path_, ec);
  }
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;

  std::string file(const std::string& name) const { return (path_ / name).string(); }
  std::string write(const std::string& name, const Bytes& bytes) const {
    const std::string p = file(name);
    std::ofstream out(p, std::ios::binary);
    out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    return p;
  }

 private:
  std::filesystem::path path_;
};

inline void append_u32(Bytes& b, std::uint32_t v) {
  for (int i = 0; i < 4; ++i) b.push_back(static_cast<std::uint8_t>(v >> (8 * i)));
}

// An 18-byte TGA header followed by `pixels`.
inline Bytes MakeTGA(std::uint8_t type, std::uint16_t width, std::uint16_t height, std::uint8_t depth,
                     std::uint8_t descriptor, const Bytes& pixels) {
  std::array<std::uint8_t, 18> header{};
  header[2] = type;
  header[12] = static_cast<std::uint8_t>(width);
  header[13] = static_cast<std::uint8_t>(width >> 8);
  header[14] = static_cast<std::uint8_t>(height);
  header[15] = static_cast<std::uint8_t>(height >> 8);
  header[16] = depth;
  header[17] = descriptor;
  Bytes b(header.size() + pixels.size());
  std::copy(header.begin(), header.end(), b.begin());
  std::copy(pixels.begin(), pixels.end(), b.begin() + 18);
  return b;
}

// The fields of a DDS header that tests vary; the rest stay zero.
struct DDSHeaderFields {
  std::uint32_t flags = 0x1007;  // caps, height, width, pixel format
  std::uint32_t width = 4;
  std::uint32_t height = 4;
  std::uint32_t mipCount = 1;
  std::uint32_t pfFlags = 4;  // DDS_FOURCC
  std::string fourCC = "DXT1";
  std::uint32_t rgbBits = 0;
  std::uint32_t masks[4] = {0, 0, 0, 0};
  std::uint32_t caps2 = 0;
};

// Magic, the 124-byte header, and `data` after it (a DX10 header too if the test puts
// one into `data`).
inline Bytes MakeDDS(const DDSHeaderFields& s, const Bytes& data) {
  Bytes b = {'D', 'D', 'S', ' '};
  append_u32(b, 124);
  append_u32(b, s.flags);
  append_u32(b, s.height);
  append_u32(b, s.width);
  append_u32(b, 0);  // pitch or linear size
  append_u32(b, 0);  // depth
  append_u32(b, s.mipCount);
  for (int i = 0; i < 11; ++i) append_u32(b, 0);
  append_u32(b, 32);
  append_u32(b, s.pfFlags);
  for (int i = 0; i < 4; ++i) b.push_back(i < static_cast<int>(s.fourCC.size()) ? s.fourCC[i] : 0);
  append_u32(b, s.rgbBits);
  for (std::uint32_t m : s.masks) append_u32(b, m);
  append_u32(b, 0x1000);  // caps1: texture
  append_u32(b, s.caps2);
  append_u32(b, 0);
  append_u32(b, 0);
  append_u32(b, 0);
  b.insert(b.end(), data.begin(), data.end());
  return b;
}

// The bytes of a followed by those of b.
inline Bytes operator+(Bytes a, const Bytes& b) {
  a.insert(a.end(), b.begin(), b.end());
  return a;
}

// `count` copies of one block.
inline Bytes Repeat(const Bytes& block, std::size_t count) {
  Bytes out;
  for (std::size_t i = 0; i < count; ++i) out.insert(out.end(), block.begin(), block.end());
  return out;
}

}  // namespace vorn::test
