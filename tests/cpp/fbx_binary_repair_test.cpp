// The binary FBX repair of our asset tools on files it must refuse: it rewrites what it
// can walk and gives nothing for anything else, without reading past the bytes.
#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <string>

#include "fbx_binary_repair.h"

namespace vorn::tools {
namespace {

std::vector<std::uint8_t> Header(std::uint32_t version) {
  std::vector<std::uint8_t> h(27, 0);
  std::memcpy(h.data(), "Kaydara FBX Binary  ", 20);
  h[21] = 0x1a;
  for (int i = 0; i < 4; ++i) h[23 + i] = static_cast<std::uint8_t>(version >> (8 * i));
  return h;
}

// A record with one 'I' property and no children; `end` is where it claims to end.
void AppendRecord(std::vector<std::uint8_t>& f, const std::string& name, std::uint64_t end) {
  const auto put64 = [&](std::uint64_t v) {
    for (int i = 0; i < 8; ++i) f.push_back(static_cast<std::uint8_t>(v >> (8 * i)));
  };
  put64(end);
  put64(1);
  put64(5);
  f.push_back(static_cast<std::uint8_t>(name.size()));
  f.insert(f.end(), name.begin(), name.end());
  f.insert(f.end(), {'I', 7, 0, 0, 0});
}

TEST(FbxBinaryRepair, RefusesWhatItCannotWalkAndKeepsWhatItCan) {
  EXPECT_FALSE(AddFbxEndRecords({}));
  const std::vector<std::uint8_t> ascii{';', ' ', 'F', 'B', 'X'};
  EXPECT_FALSE(AddFbxEndRecords(ascii));
  EXPECT_FALSE(AddFbxEndRecords(Header(7400)));  // 32-bit offsets: not what the writer makes

  // One good record, then the top-level end record and a footer.
  std::vector<std::uint8_t> good = Header(7500);
  AppendRecord(good, "Ver", good.size() + 25 + 3 + 5);
  good.insert(good.end(), 25, 0);
  good.insert(good.end(), {0xfa, 0xbc});
  const auto fixed = AddFbxEndRecords(good);
  ASSERT_TRUE(fixed);
  EXPECT_EQ(*fixed, good);  // nothing was missing

  // A record ending past the file, before itself, or inside its own properties.
  for (std::uint64_t end : {std::uint64_t{1} << 40, std::uint64_t{10}, std::uint64_t{27 + 26}}) {
    std::vector<std::uint8_t> bad = Header(7500);
    AppendRecord(bad, "Ver", end);
    EXPECT_FALSE(AddFbxEndRecords(bad)) << end;
  }
  // Every truncation, and random bytes after a good header: an answer, never a read
  // past the end (the sanitizer build would stop here).
  for (std::size_t n = 0; n < good.size(); ++n) (void)AddFbxEndRecords(std::span(good).first(n));
  std::mt19937 random(7);
  for (int i = 0; i < 200; ++i) {
    std::vector<std::uint8_t> noise = Header(7500);
    for (int b = 0; b < 200; ++b) noise.push_back(static_cast<std::uint8_t>(random() % 4 == 0 ? random() : 0));
    (void)AddFbxEndRecords(noise);
  }
}

}  // namespace
}  // namespace vorn::tools
