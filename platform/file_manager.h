#pragma once

#include <string>
#include <string_view>

#include "util/result.h"

namespace veltrix {

// The address of a file; every byte that could mean something else in it is escaped.
std::string fileUrl(std::string_view path);

// Asks the file manager on the bus at `busAddress` (empty: the session bus) to show that file, and starts it
// when it does not run. Waits for its answer, at most ten seconds.
Status showInFileManager(const std::string& path, const std::string& busAddress = {});

}  // namespace veltrix
