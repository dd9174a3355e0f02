#pragma once

#include <string>
#include <vector>

namespace veltrix {

// Where applications are looked for, and for whom.
struct ApplicationSearch {
  std::vector<std::string> folders;   // that hold desktop entries; the first that has an entry wins
  std::vector<std::string> programs;  // that hold programs
  std::vector<std::string> desktops;  // names of the desktop that runs, the most particular first
  std::string language;               // a locale's name; empty for texts without a language
};

// As this process's environment has it: XDG_DATA_HOME, XDG_DATA_DIRS, PATH, XDG_CURRENT_DESKTOP, and the
// language of messages (LANGUAGE before the process's locale, which the program sets at its start).
ApplicationSearch standardApplicationSearch();

}  // namespace veltrix
