#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace veltrix {

// What a desktop entry says about showing and starting an application. Texts without a value are empty.
struct DesktopEntry {
  std::optional<std::string> name;
  std::vector<std::string> arguments;  // of Exec, the program first; empty when it cannot be understood
  std::string type;                    // "Application" for what can be started
  std::string comment;
  std::string icon;  // a path or the name in the icon theme
  std::string tryExec;
  std::string folder;  // where the program wants to run
  std::vector<std::string> keywords;
  std::vector<std::string> onlyShowIn;  // names of desktops
  std::vector<std::string> notShowIn;
  bool hidden = false;          // counts as if it were not there
  bool noDisplay = false;       // not for menus
  bool terminal = false;        // runs in a terminal
  bool busActivatable = false;  // started over the session bus; Exec may be missing
};

// Reads the group "Desktop Entry" of a file in desktop-entry form. Of the texts in several languages it takes
// those that suit `language`, a locale's name, best; without one those without a language. Lines that make no
// sense are passed over, of a key that occurs twice the last counts. Field codes (%f and the like) are
// dropped.
DesktopEntry readDesktopEntry(std::string_view bytes, std::string_view language = {});

// An entry that starts `program` without arguments when the session starts.
std::string writeAutostartEntry(std::string_view name, std::string_view program);

}  // namespace veltrix
