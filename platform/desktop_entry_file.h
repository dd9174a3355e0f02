#pragma once

#include <string>

namespace veltrix {

// The start of a regular file, up to the largest size that a desktop entry may have (1 MiB); empty for
// anything else. Never waits, not even for a pipe that somebody has put there.
std::string readEntryFile(const std::string& path);

}  // namespace veltrix
