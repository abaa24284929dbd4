// vorn-demo: the demonstration as a native program.
#include <exception>
#include <iostream>
#include <string>
#include <vector>

#include "app/demo.h"

int main(int argc, char** argv) {
  try {
    return vorn::RunDemo(std::vector<std::string>(argv + 1, argv + argc));
  } catch (const std::exception& e) {
    std::cerr << "vorn-demo: " << e.what() << "\n";
    return 1;
  }
}
