#pragma once

#include <string>

#include "util/result.h"

namespace veltrix {

// The absolute path of something that exists: "~" alone or before a slash is the home folder, final slashes
// go. An error that names the path for anything else.
Result<std::string> existingItem(const std::string& path);

// A path as existingItem takes it, which need not exist.
Result<std::string> absoluteItem(const std::string& path);

}  // namespace veltrix
