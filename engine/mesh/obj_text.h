#pragma once
// Text rules of the OBJ and MTL reader: lines as a text-mode read gives them (any of
// "\n", "\r\n", "\r" ends a line), words as a whitespace split gives them, and numbers
// as float() and int() accept them. Failures name the file and the line.
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vorn::obj_text {

// Where a value came from, for error texts: "<file> line <n>".
struct Where {
  const std::string* file;
  std::size_t line;
  std::string str() const;
};

// ValueError when `text` is not valid UTF-8 (the files are read as UTF-8 text).
void CheckUTF8(std::string_view text, const std::string& file);

// Calls onLine(line, number) for each line, numbers from 1.
template <class F>
void ForEachLine(std::string_view text, F&& onLine) {
  std::size_t number = 0;
  std::size_t start = 0;
  while (start < text.size()) {
    std::size_t end = text.find_first_of("\r\n", start);
    if (end == std::string_view::npos) end = text.size();
    onLine(text.substr(start, end - start), ++number);
    if (end == text.size()) break;
    start = end + 1;
    if (text[end] == '\r' && start < text.size() && text[start] == '\n') ++start;
  }
}

// The words of a line, split on runs of ASCII whitespace (including \v, \f, \x1c-\x1f).
void SplitWords(std::string_view line, std::vector<std::string_view>& words);

// float(text): decimal forms, "inf", "infinity", "nan" in any case, an optional sign and
// underscores between digits. ValueError otherwise; values beyond the double range give
// an infinity, tiny ones zero.
double ParseFloat(std::string_view text, const Where& where);

// int(text) in base 10: an optional sign, digits, underscores between digits.
// ValueError otherwise, and for a value outside 64 bits (no vertex list is that long).
std::int64_t ParseInt(std::string_view text, const Where& where);

}  // namespace vorn::obj_text
