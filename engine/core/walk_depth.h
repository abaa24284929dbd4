#pragma once
// A bound on the depth of the engine's recursive walks over node trees (update, draw,
// load, listings). Trees cannot hold cycles, but a script can still build a chain deep
// enough to exhaust the C++ stack; past the bound a walk raises RecursionError, as the
// interpreter does for Python code, instead of crashing.
#include "core/errors.h"

namespace vorn {

class WalkDepth {
 public:
  static constexpr int kMaxDepth = 5000;

  explicit WalkDepth(const char* walk) {
    if (++depth_ > kMaxDepth) {
      --depth_;
      throw RecursionError(std::string("maximum recursion depth exceeded in ") + walk);
    }
  }
  ~WalkDepth() { --depth_; }
  WalkDepth(const WalkDepth&) = delete;
  WalkDepth& operator=(const WalkDepth&) = delete;

 private:
  static inline thread_local int depth_ = 0;
};

}  // namespace vorn
