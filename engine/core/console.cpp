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

void append_py_float(std::string& out, double value) {
  if (std::isnan(value)) {
    out += "nan";
    return;
  }
  if (std::isinf(value)) {
    out += value > 0 ? "inf" : "-inf";
    return;
  }
  // Shortest round-trip digits in scientific form, "[-]d[.ddd]e[+-]x", taken apart on
  // the stack: printers call this for every value of large arrays.
  char buf[64];
  const char* const end = std::to_chars(buf, buf + sizeof buf, value, std::chars_format::scientific).ptr;
  const char* p = buf;
  const bool negative = *p == '-';
  if (negative) ++p;
  char digits[32];
  std::size_t count = 0;
  for (; p < end && *p != 'e'; ++p) {
    if (*p != '.') digits[count++] = *p;
  }
  int exponent = 0;
  const bool negativeExponent = p + 1 < end && p[1] == '-';
  for (const char* q = p + 2; q < end; ++q) exponent = exponent * 10 + (*q - '0');
  if (negativeExponent) exponent = -exponent;

  if (negative) out += '-';
  if (exponent < -4 || exponent >= 16) {
    out += digits[0];
    if (count > 1) {
      out += '.';
      out.append(digits + 1, count - 1);
    }
    char exp_buf[16];
    std::snprintf(exp_buf, sizeof exp_buf, "e%c%02d", exponent < 0 ? '-' : '+', std::abs(exponent));
    out += exp_buf;
    return;
  }
  if (exponent < 0) {
    out += "0.";
    out.append(static_cast<std::size_t>(-exponent - 1), '0');
    out.append(digits, count);
    return;
  }
  const auto int_len = static_cast<std::size_t>(exponent) + 1;
  if (count <= int_len) {
    out.append(digits, count);
    out.append(int_len - count, '0');
    out += ".0";
    return;
  }
  out.append(digits, int_len);
  out += '.';
  out.append(digits + int_len, count - int_len);
}

std::string py_float(double value) {
  std::string out;
  append_py_float(out, value);
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
