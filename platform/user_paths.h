#pragma once

#include <string>

namespace veltrix {

// The user's home folder without a final slash ("/" excepted): HOME when it is absolute, else the password
// database; empty when neither names one.
std::string homeDirectory();

// $XDG_CONFIG_HOME when it is absolute, else ".config" in the home folder; without a final slash; empty
// without a home folder.
std::string configDirectory();

// The path with "~" in place of the user's home folder; any other path as it is.
std::string abbreviatedPath(const std::string& path);

}  // namespace veltrix
