// Prints the parts of docs/inertia.md that the engine decides.
#include <iostream>
#include <string_view>

#include "tests/driver/inertia_page.h"

int main(int argc, char** argv) {
  const std::string_view part = argc == 2 ? argv[1] : "";
  if (part != "table" && part != "plot") {
    std::cerr << "usage: inertia_page table|plot\n";
    return 2;
  }
  std::cout << (part == "table" ? veltrix::inertiaTable() : veltrix::inertiaPlot());
  return 0;
}
