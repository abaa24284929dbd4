#pragma once
// Collects console lines for the duration of a test.
#include <string>
#include <string_view>
#include <vector>

#include "core/console.h"

namespace vorn {

class ConsoleCapture {
 public:
  ConsoleCapture() : previous_(console::set_sink(&ConsoleCapture::sink)) { buffer().clear(); }
  ~ConsoleCapture() { console::set_sink(previous_); }
  ConsoleCapture(const ConsoleCapture&) = delete;
  ConsoleCapture& operator=(const ConsoleCapture&) = delete;

  const std::vector<std::string>& lines() const { return buffer(); }
  void clear() { buffer().clear(); }

 private:
  static std::vector<std::string>& buffer() {
    static std::vector<std::string> lines;
    return lines;
  }
  static void sink(std::string_view line) { buffer().emplace_back(line); }
  console::Sink previous_;
};

}  // namespace vorn
