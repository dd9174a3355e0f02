#pragma once

#include <string>

namespace veltrix {

// The resource folder that belongs to the program at `program`: the folder around the application that holds
// it, or lib/veltrix next to its bin folder; `fallback` when neither is one.
std::string resourceFolderFor(const std::string& program, const std::string& fallback);

// The folder named by the environment variable VELTRIX_RESOURCES, else the one that belongs to this program,
// else the one that the build was configured to install to.
std::string standardResourceFolder();

}  // namespace veltrix
