#pragma once
// Binary FBX as Debian 12's model importer writes it, made readable by the same importer.
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace vorn::tools {

// The importer's binary writer ends no list of nested records with the empty record
// that its reader (and the format) expects, so the reader rejects the files it writes.
// Rewrites the record tree with those end records and every record's end offset
// recomputed; properties, the header and the footer are kept byte for byte. Nothing
// when the bytes are not a binary FBX of version 7500 or later (64-bit offsets, the
// only kind the writer makes) or a record is out of bounds.
std::optional<std::vector<std::uint8_t>> AddFbxEndRecords(std::span<const std::uint8_t> file);

}  // namespace vorn::tools
