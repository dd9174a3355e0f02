#pragma once

#include <cstdint>
#include <string_view>

#include "util/result.h"

// Keys as a person writes them. The error's code is the exit code to end with.
namespace veltrix::ctl {

struct KeyCombination {
  std::uint16_t keyCode = 0;
  std::uint16_t modifiers = 0;
};

// "Control+Shift" in any case and order, also Ctrl, Alt (Option), Super (Command) and the like; a number is
// the mask itself. The empty text is no modifier.
Result<std::uint16_t> parseModifiers(std::string_view text);

// "Ctrl+Alt+T", "Shift+F5", "Page Up", "Num 5": modifiers and one key, by what it is called under the current
// keyboard layout.
Result<KeyCombination> parseKeystroke(std::string_view text);

// A virtual key code in decimal or behind "0x": 0 to 126, or 255 for no key.
Result<std::uint16_t> parseKeyCode(std::string_view text);

}  // namespace veltrix::ctl
