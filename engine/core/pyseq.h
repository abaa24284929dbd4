#pragma once
// Python sequence indexing: an index in [-n, n) wraps, anything else raises IndexError.
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "core/errors.h"

namespace vorn {

// Normalises a Python-style index against a sequence of length n.
inline std::size_t py_index(std::int64_t i, std::size_t n, const char* what = "list") {
  const auto size = static_cast<std::int64_t>(n);
  if (i < -size || i >= size) {
    throw IndexError(std::string(what) + " index out of range");
  }
  return static_cast<std::size_t>(i < 0 ? i + size : i);
}

template <class Seq>
decltype(auto) at(Seq& seq, std::int64_t i) {
  return seq[py_index(i, seq.size())];
}

}  // namespace vorn
