#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace veltrix {

// What a keyboard layout is put together from, by the names of the system's keyboard data. Layout, variant
// and options may be lists with commas; empty parts mean what the system takes without them.
struct LayoutNames {
  std::string model;
  std::string layout;
  std::string variant;
  std::string options;
};

// The names in the text of a file such as /etc/default/keyboard: lines KEY=VALUE as a shell writes them,
// quoted or not. Lines that are something else are passed over; of two values the last counts. Nothing when
// the text names no layout.
std::optional<LayoutNames> readLayoutNames(std::string_view text);

// The names in the variables XKB_DEFAULT_*; nothing when they name no layout.
std::optional<LayoutNames> layoutNamesOfEnvironment();

// "de", "us:dvorak" or "us(dvorak)": a layout and its variant. Nothing when the text cannot be such names.
std::optional<LayoutNames> parseLayoutName(std::string_view text);

}  // namespace veltrix
