#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/application_search.h"

namespace veltrix {

// An application as its desktop entry describes it. Texts are well-formed UTF-8 without control characters.
struct InstalledApplication {
  std::string identifier;  // the entry's path below its folder, "/" as "-", without ".desktop"
  std::string name;        // never empty
  std::string comment;
  std::vector<std::string> keywords;
  std::string icon;                    // a path or the name in the icon theme; empty for none
  std::vector<std::string> arguments;  // the program first; empty when only the session bus starts it
  std::string path;                    // of the entry
  std::string folder;                  // where the program wants to run; empty for anywhere
  bool terminal = false;               // the program runs in a terminal
  bool busActivatable = false;         // the session bus starts it, by the identifier
};

// The applications that this desktop shows in its menus, in the order of their names in the process's
// collation. Files that cannot be read or make no sense are passed over.
std::vector<InstalledApplication> installedApplications(const ApplicationSearch& search);

// The application with that identifier; also one that menus do not show, as long as it can be started.
std::optional<InstalledApplication> installedApplication(std::string_view identifier,
                                                         const ApplicationSearch& search);

// The one that the desktop entry at `path` describes, with an identifier only when looking for that
// identifier leads to this very file.
std::optional<InstalledApplication> applicationOfEntry(const std::string& path,
                                                       const ApplicationSearch& search);

}  // namespace veltrix
