#include "core/console.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <system_error>

#include "core/script_value.h"

namespace vorn::console {
namespace {

void stdout_sink(std::string_view line) {
  std::fwrite(line.data(), 1, line.size(), stdout);
  std::fputc('\n', stdout);
  std::fflush(stdout);
}

Sink g_sink = &stdout_sink;

}  // namespace

Sink set_sink(Sink sink) {
  Sink previous = g_sink;
  g_sink = sink ? sink : &stdout_sink;
  return previous;
}

void write_line(std::string_view line) { g_sink(line); }

std::string py_float(double value) {
  if (std::isnan(value)) return "nan";
  if (std::isinf(value)) return value > 0 ? "inf" : "-inf";

  // Shortest round-trip digits in scientific form: "d[.ddd]e[+-]x".
  char buf[64];
  auto res = std::to_chars(buf, buf + sizeof buf, value, std::chars_format::scientific);
  std::string sci(buf, res.ptr);
  const auto epos = sci.find('e');
  const int exponent = std::atoi(sci.c_str() + epos + 1);
  std::string mantissa = sci.substr(0, epos);
  const bool negative = mantissa[0] == '-';
  if (negative) mantissa.erase(0, 1);
  std::string digits;
  for (char c : mantissa) {
    if (c != '.') digits += c;
  }

  std::string out = negative ? "-" : "";
  if (exponent < -4 || exponent >= 16) {
    out += digits[0];
    if (digits.size() > 1) {
      out += '.';
      out.append(digits, 1);
    }
    char exp_buf[16];
    std::snprintf(exp_buf, sizeof exp_buf, "e%c%02d", exponent < 0 ? '-' : '+', std::abs(exponent));
    return out + exp_buf;
  }
  if (exponent < 0) {
    out += "0.";
    out.append(static_cast<std::size_t>(-exponent - 1), '0');
    out += digits;
    return out;
  }
  const auto int_len = static_cast<std::size_t>(exponent) + 1;
  if (digits.size() <= int_len) {
    out += digits;
    out.append(int_len - digits.size(), '0');
    out += ".0";
    return out;
  }
  out.append(digits, 0, int_len);
  out += '.';
  out.append(digits, int_len);
  return out;
}

std::string py_repr_str(std::string_view text) {
  const bool has_single = text.find('\'') != std::string_view::npos;
  const bool has_double = text.find('"') != std::string_view::npos;
  const char quote = (has_single && !has_double) ? '"' : '\'';
  std::string out(1, quote);
  for (char c : text) {
    switch (c) {
      case '\\': out += "\\\\"; break;
      case '\n': out += "\\n"; break;
      case '\r': out += "\\r"; break;
      case '\t': out += "\\t"; break;
      default:
        if (c == quote) out += '\\';
        out += c;
    }
  }
  return out + quote;
}

std::string to_str(const ScriptValue& v) { return v.str(); }

}  // namespace vorn::console
