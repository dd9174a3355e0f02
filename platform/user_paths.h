#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace veltrix {

// The user's home folder without a final slash ("/" excepted): HOME when it is absolute, else the password
// database; empty when neither names one.
std::string homeDirectory();

// $XDG_CONFIG_HOME when it is absolute, else ".config" in the home folder; without a final slash; empty
// without a home folder.
std::string configDirectory();

// Where the settings of programs are looked for: configDirectory(), then the folders of XDG_CONFIG_DIRS.
std::vector<std::string> configDirectories();

// The items of a text that colons divide, without empty ones.
std::vector<std::string> colonList(std::string_view text);

// Those among them that are absolute, without final slashes. Relative folders would mean something else
// wherever the process happens to stand.
std::vector<std::string> absoluteFolders(std::string_view text);

// The path with "~" in place of the user's home folder; any other path as it is.
std::string abbreviatedPath(const std::string& path);

}  // namespace veltrix
