#include "fbx_binary_repair.h"

#include <cstring>
#include <string_view>

namespace vorn::tools {
namespace {

constexpr std::string_view kMagic{"Kaydara FBX Binary  \0", 21};
constexpr std::size_t kHeaderSize = 27;  // magic, two bytes, version
constexpr std::size_t kRecordHead = 25;  // end offset, property count, property bytes, name length
constexpr std::uint32_t kFirst64BitVersion = 7500;

std::uint64_t Load64(const std::uint8_t* p) {
  std::uint64_t v = 0;
  for (int i = 7; i >= 0; --i) v = (v << 8) | p[i];
  return v;
}

void Store64(std::uint8_t* p, std::uint64_t v) {
  for (int i = 0; i < 8; ++i) p[i] = static_cast<std::uint8_t>(v >> (8 * i));
}

class Rewriter {
 public:
  explicit Rewriter(std::span<const std::uint8_t> in) : in_(in) {}

  // Copies the records of [begin, end) to the output, each list closed by an end record.
  // A record gets a nested list when it has children or no properties, and every object
  // (a record inside "Objects") gets one, empty or not: the reader requires a body there.
  // Returns where the input's list ended (after its own end record, if it had one).
  std::optional<std::size_t> CopyList(std::size_t at, std::size_t end, int depth, bool objects) {
    if (depth > 64) return std::nullopt;
    while (at < end) {
      if (end - at < kRecordHead) return std::nullopt;
      const std::uint64_t recordEnd = Load64(&in_[at]);
      if (recordEnd == 0) return at + kRecordHead;  // the list's own end record
      const std::uint64_t propCount = Load64(&in_[at + 8]);
      const std::uint64_t propBytes = Load64(&in_[at + 16]);
      const std::size_t nameLength = in_[at + 24];
      const std::size_t props = at + kRecordHead + nameLength;
      if (recordEnd > end || recordEnd <= at || props > recordEnd || propBytes > recordEnd - props)
        return std::nullopt;
      const std::size_t children = props + static_cast<std::size_t>(propBytes);
      const std::size_t start = out_.size();
      Append(in_.subspan(at, children - at));
      if (children < recordEnd || propCount == 0 || objects) {
        const std::string_view name(reinterpret_cast<const char*>(&in_[at + kRecordHead]), nameLength);
        if (!CopyList(children, static_cast<std::size_t>(recordEnd), depth + 1, name == "Objects")) return std::nullopt;
        AppendEndRecord();
      }
      Store64(&out_[start], out_.size());
      at = static_cast<std::size_t>(recordEnd);
    }
    return at;
  }

  std::vector<std::uint8_t> Take() { return std::move(out_); }
  void Append(std::span<const std::uint8_t> bytes) {
    const std::size_t at = out_.size();
    out_.resize(at + bytes.size());
    if (!bytes.empty()) std::memcpy(&out_[at], bytes.data(), bytes.size());
  }
  void AppendEndRecord() { out_.resize(out_.size() + kRecordHead, 0); }

 private:
  std::span<const std::uint8_t> in_;
  std::vector<std::uint8_t> out_;
};

}  // namespace

std::optional<std::vector<std::uint8_t>> AddFbxEndRecords(std::span<const std::uint8_t> file) {
  if (file.size() < kHeaderSize || std::memcmp(file.data(), kMagic.data(), kMagic.size()) != 0) return std::nullopt;
  const std::uint32_t version = file[23] | (file[24] << 8) | (file[25] << 16) | (std::uint32_t{file[26]} << 24);
  if (version < kFirst64BitVersion) return std::nullopt;
  Rewriter rewriter(file);
  rewriter.Append(file.first(kHeaderSize));
  // The top-level list ends where a record's end offset is zero; the footer follows.
  const auto footer = rewriter.CopyList(kHeaderSize, file.size(), 0, false);
  if (!footer) return std::nullopt;
  rewriter.AppendEndRecord();
  rewriter.Append(file.subspan(*footer));
  return rewriter.Take();
}

}  // namespace vorn::tools
