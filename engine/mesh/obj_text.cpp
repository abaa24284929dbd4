#include "mesh/obj_text.h"

#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <string>

#include "core/console.h"
#include "core/errors.h"

namespace vorn::obj_text {
namespace {

bool is_space(unsigned char c) { return c == ' ' || (c >= '\t' && c <= '\r') || (c >= 0x1c && c <= 0x1f); }
bool is_digit(char c) { return c >= '0' && c <= '9'; }

// The text with its underscores removed, or false when one does not stand between two
// digits (Python's rule for numeric literals).
bool strip_underscores(std::string_view text, std::string& out) {
  out.clear();
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '_') {
      out += text[i];
      continue;
    }
    if (i == 0 || i + 1 == text.size() || !is_digit(text[i - 1]) || !is_digit(text[i + 1])) return false;
  }
  return true;
}

bool equals_nocase(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    const char c = (a[i] >= 'A' && a[i] <= 'Z') ? static_cast<char>(a[i] - 'A' + 'a') : a[i];
    if (c != b[i]) return false;
  }
  return true;
}

// A decimal number: digits with an optional point, an optional exponent. No sign.
bool is_decimal(std::string_view t) {
  std::size_t i = 0, digits = 0;
  while (i < t.size() && is_digit(t[i])) ++i, ++digits;
  if (i < t.size() && t[i] == '.') {
    ++i;
    while (i < t.size() && is_digit(t[i])) ++i, ++digits;
  }
  if (digits == 0) return false;
  if (i < t.size() && (t[i] == 'e' || t[i] == 'E')) {
    ++i;
    if (i < t.size() && (t[i] == '+' || t[i] == '-')) ++i;
    const std::size_t expStart = i;
    while (i < t.size() && is_digit(t[i])) ++i;
    if (i == expStart) return false;
  }
  return i == t.size();
}

[[noreturn]] void refuse(const Where& where, const char* what, std::string_view text) {
  throw ValueError("Vorn_3DMesh.LoadMeshFromFile_OBJ: " + where.str() + ": " + what +
                   console::py_repr_str(text));
}

}  // namespace

std::string Where::str() const { return *file + " line " + std::to_string(line); }

void CheckUTF8(std::string_view text, const std::string& file) {
  const auto* s = reinterpret_cast<const unsigned char*>(text.data());
  const std::size_t n = text.size();
  std::size_t i = 0;
  while (i < n) {
    const unsigned char c = s[i];
    std::size_t len = 0;
    unsigned char lo = 0x80, hi = 0xBF;  // range of the second byte
    if (c < 0x80) {
      ++i;
      continue;
    } else if (c >= 0xC2 && c <= 0xDF) {
      len = 2;
    } else if (c >= 0xE0 && c <= 0xEF) {
      len = 3;
      if (c == 0xE0) lo = 0xA0;
      if (c == 0xED) hi = 0x9F;  // no surrogates
    } else if (c >= 0xF0 && c <= 0xF4) {
      len = 4;
      if (c == 0xF0) lo = 0x90;
      if (c == 0xF4) hi = 0x8F;
    }
    bool ok = len != 0 && i + len <= n;
    for (std::size_t k = 1; ok && k < len; ++k) {
      const unsigned char b = s[i + k];
      ok = k == 1 ? (b >= lo && b <= hi) : (b >= 0x80 && b <= 0xBF);
    }
    if (!ok) {
      char byte[8];
      std::snprintf(byte, sizeof byte, "0x%02x", c);
      throw ValueError("Vorn_3DMesh.LoadMeshFromFile_OBJ: " + file + ": 'utf-8' codec can't decode byte " + byte +
                       " in position " + std::to_string(i));
    }
    i += len;
  }
}

void SplitWords(std::string_view line, std::vector<std::string_view>& words) {
  words.clear();
  std::size_t i = 0;
  while (i < line.size()) {
    while (i < line.size() && is_space(static_cast<unsigned char>(line[i]))) ++i;
    const std::size_t start = i;
    while (i < line.size() && !is_space(static_cast<unsigned char>(line[i]))) ++i;
    if (i > start) words.push_back(line.substr(start, i - start));
  }
}

double ParseFloat(std::string_view text, const Where& where) {
  static constexpr const char* kWhat = "could not convert string to float: ";
  std::string_view body = text;
  bool negative = false;
  if (!body.empty() && (body[0] == '+' || body[0] == '-')) {
    negative = body[0] == '-';
    body.remove_prefix(1);
  }
  if (equals_nocase(body, "inf") || equals_nocase(body, "infinity")) {
    return negative ? -std::numeric_limits<double>::infinity() : std::numeric_limits<double>::infinity();
  }
  if (equals_nocase(body, "nan")) return std::numeric_limits<double>::quiet_NaN();

  std::string plain;
  if (body.find('_') != std::string_view::npos) {
    if (!strip_underscores(body, plain)) refuse(where, kWhat, text);
    body = plain;
  }
  if (!is_decimal(body)) refuse(where, kWhat, text);
  double value = 0.0;
  const auto [end, ec] = std::from_chars(body.data(), body.data() + body.size(), value, std::chars_format::general);
  if (ec == std::errc::result_out_of_range) {
    // Beyond the double range: strtod gives the infinity or the zero float() gives.
    const std::string copy(body);
    value = std::strtod(copy.c_str(), nullptr);
  } else if (ec != std::errc() || end != body.data() + body.size()) {
    refuse(where, kWhat, text);
  }
  return negative ? -value : value;
}

std::int64_t ParseInt(std::string_view text, const Where& where) {
  static constexpr const char* kWhat = "invalid literal for int() with base 10: ";
  std::string_view body = text;
  bool negative = false;
  if (!body.empty() && (body[0] == '+' || body[0] == '-')) {
    negative = body[0] == '-';
    body.remove_prefix(1);
  }
  std::string plain;
  if (body.find('_') != std::string_view::npos) {
    if (!strip_underscores(body, plain)) refuse(where, kWhat, text);
    body = plain;
  }
  if (body.empty()) refuse(where, kWhat, text);
  for (char c : body)
    if (!is_digit(c)) refuse(where, kWhat, text);
  // Magnitude first, so that the most negative value parses too.
  std::uint64_t magnitude = 0;
  const auto [end, ec] = std::from_chars(body.data(), body.data() + body.size(), magnitude);
  const std::uint64_t limit = negative ? std::uint64_t{1} << 63 : (std::uint64_t{1} << 63) - 1;
  if (ec != std::errc() || end != body.data() + body.size() || magnitude > limit) {
    throw ValueError("Vorn_3DMesh.LoadMeshFromFile_OBJ: " + where.str() + ": index " + std::string(text) +
                     " is out of range");
  }
  if (negative) return magnitude == (std::uint64_t{1} << 63) ? std::numeric_limits<std::int64_t>::min()
                                                              : -static_cast<std::int64_t>(magnitude);
  return static_cast<std::int64_t>(magnitude);
}

}  // namespace vorn::obj_text
