#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace veltrix {

// What a desktop entry says about starting an application.
struct DesktopEntry {
  std::optional<std::string> name;     // not the localised ones
  std::vector<std::string> arguments;  // of Exec, the program first; empty when it cannot be understood
};

// Reads the group "Desktop Entry" of a file in desktop-entry form. Lines that make no sense are passed over,
// of a key that occurs twice the last counts. Field codes (%f and the like) are dropped.
DesktopEntry readDesktopEntry(std::string_view bytes);

// An entry that starts `program` without arguments when the session starts.
std::string writeAutostartEntry(std::string_view name, std::string_view program);

}  // namespace veltrix
