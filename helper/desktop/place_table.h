#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "helper/commands/attempt.h"

namespace veltrix {

// A program that is started for a place, where none is set by the user.
struct PlaceProgram {
  Place place;
  std::uint8_t desktops;  // kOn… bits
  const char* program;    // the identifier of a desktop entry when it ends in ".desktop", else a name in PATH
};

// Those for one place are tried in their order.
std::span<const PlaceProgram> placePrograms();

// A terminal, and what is to stand before the program that it is to run; null for nothing.
struct TerminalProgram {
  std::uint8_t desktops;
  const char* program;
  const char* runOption;
};

// In the order in which they are looked for.
std::span<const TerminalProgram> terminalPrograms();

// The arguments that start the first terminal in PATH that suits the desktop, and `program` in it unless that
// is empty. Empty when there is no terminal.
std::vector<std::string> terminalArguments(std::uint8_t desktop, const std::vector<std::string>& program);

}  // namespace veltrix
