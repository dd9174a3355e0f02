#pragma once

#include <string>
#include <string_view>

namespace veltrix {

// The folder that the file user-dirs.dirs names for `subject` ("DOCUMENTS", "DOWNLOAD"); empty when it names
// none that is absolute or below the home folder.
std::string readUserFolder(std::string_view bytes, std::string_view subject, const std::string& home);

// The user's folder for `subject`; `usual`, a name in the home folder, where no file names one. Empty without
// a home folder.
std::string userFolder(std::string_view subject, std::string_view usual);

}  // namespace veltrix
