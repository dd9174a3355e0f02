#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/application_search.h"
#include "platform/installed_applications.h"

namespace veltrix {

// What a file of the form of mimeapps.list says of one type: file names of desktop entries, the preferred one
// first.
struct MimeChoices {
  std::vector<std::string> defaults;
  std::vector<std::string> added;
  std::vector<std::string> removed;
  std::vector<std::string> cached;  // in the index that the desktop entries themselves give

  friend bool operator==(const MimeChoices&, const MimeChoices&) = default;
};

MimeChoices readMimeChoices(std::string_view bytes, std::string_view type);

// The application that the user, the desktop or the system prefers for a type such as "inode/directory" or
// "x-scheme-handler/mailto", and without such a preference one that knows the type. Only what is installed
// counts. `settings` are the folders for settings (configDirectories).
std::optional<InstalledApplication> defaultApplication(std::string_view type, const ApplicationSearch& search,
                                                       const std::vector<std::string>& settings);

}  // namespace veltrix
