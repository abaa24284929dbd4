#include "core/console.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "console_capture.h"

namespace vorn {
namespace {

TEST(Console, FloatsPrintAsPythonPrintsThem) {
  struct Case {
    double value;
    const char* text;
  };
  const Case cases[] = {
      {1.0, "1.0"},         {0.5, "0.5"},         {0.1, "0.1"},       {-2.25, "-2.25"},
      {100.0, "100.0"},     {1e15, "1000000000000000.0"},             {1e16, "1e+16"},
      {1.5e16, "1.5e+16"},  {0.0001, "0.0001"},   {0.00001, "1e-05"}, {1.25e-7, "1.25e-07"},
      {0.0, "0.0"},         {-0.0, "-0.0"},       {1.0 / 3.0, "0.3333333333333333"},
      {123456.789, "123456.789"},                 {2.5e-5, "2.5e-05"},
      {std::numeric_limits<double>::infinity(), "inf"},
      {-std::numeric_limits<double>::infinity(), "-inf"},
      {std::nan(""), "nan"},
  };
  for (const auto& c : cases) EXPECT_EQ(console::py_float(c.value), c.text) << c.text;
}

TEST(Console, PrintJoinsValuesLikePrint) {
  ConsoleCapture capture;
  console::print("MOUSE:", 3, ",", 4.0);
  console::print(std::vector<double>{1.0, 2.5}, true, std::nullopt);
  console::print(std::vector<std::string>{"a", "it's"});
  console::print_concat("KEY:", 'a' - 'a', 0.5);
  EXPECT_EQ(capture.lines(),
            (std::vector<std::string>{"MOUSE: 3 , 4.0", "[1.0, 2.5] True None", "['a', \"it's\"]", "KEY:00.5"}));
}

}  // namespace
}  // namespace vorn
