#pragma once
// The console: every line the engine prints goes through here. Values are formatted
// as a Python script prints them (1.0 prints "1.0", a list prints "[1.0, 2.0]"), since
// the console lines are part of the engine's behaviour. The Python binding installs a
// sink that writes to sys.stdout so that print order and capture agree with scripts.
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace vorn {

class ScriptValue;

namespace console {

// Receives whole lines without the trailing newline.
using Sink = void (*)(std::string_view line);

// Installs a sink; nullptr restores standard output. Returns the previous sink.
Sink set_sink(Sink sink);

// Writes one line through the current sink.
void write_line(std::string_view line);

// Python's str() of a float: shortest round-trip digits, ".0" on integral values,
// exponent form below 1e-4 and from 1e16 on, "inf", "-inf", "nan".
std::string py_float(double value);
// py_float(value) appended to `out`, without a string of its own.
void append_py_float(std::string& out, double value);

// Python's repr() of a string: single quotes unless the text holds one and no double quote.
std::string py_repr_str(std::string_view text);

// str() of a value, as print() shows it.
inline std::string to_str(const std::string& s) { return s; }
inline std::string to_str(std::string_view s) { return std::string(s); }
inline std::string to_str(const char* s) { return s; }
inline std::string to_str(bool b) { return b ? "True" : "False"; }
inline std::string to_str(double d) { return py_float(d); }
inline std::string to_str(float f) { return py_float(static_cast<double>(f)); }
template <class T>
  requires(std::is_integral_v<T> && !std::is_same_v<T, bool>)
std::string to_str(T i) {
  return std::to_string(i);
}
std::string to_str(const ScriptValue& v);
inline std::string to_str(std::nullopt_t) { return "None"; }

// repr() of a value, as it shows inside a printed list.
template <class T>
std::string to_repr(const T& v);

template <class T>
std::string to_str(const std::optional<T>& v) {
  return v ? to_str(*v) : std::string("None");
}

template <class T>
std::string to_str(const std::vector<T>& items) {
  std::string out = "[";
  for (std::size_t i = 0; i < items.size(); ++i) {
    if (i) out += ", ";
    out += to_repr(items[i]);
  }
  return out + "]";
}

template <class A, class B>
std::string to_str(const std::pair<A, B>& p) {
  return "(" + to_repr(p.first) + ", " + to_repr(p.second) + ")";
}

template <class T>
std::string to_repr(const T& v) {
  if constexpr (std::is_convertible_v<const T&, std::string_view>) {
    return py_repr_str(std::string_view(v));
  } else {
    return to_str(v);
  }
}

// print(a, b, ...): the values' str() joined by single spaces, as one line.
template <class... Args>
void print(const Args&... args) {
  std::string line;
  bool first = true;
  ((line += (first ? "" : " "), line += to_str(args), first = false), ...);
  write_line(line);
}

// The values' str() joined with nothing between them, as one line.
template <class... Args>
void print_concat(const Args&... args) {
  std::string line;
  ((line += to_str(args)), ...);
  write_line(line);
}

}  // namespace console
}  // namespace vorn
