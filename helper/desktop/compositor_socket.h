#pragma once

#include <string>

#include "util/file_descriptor.h"
#include "util/result.h"

namespace veltrix {

// A connection to the socket of sway or i3, which neither connecting nor anything later waits for.
Result<FileDescriptor> connectToCompositor(const std::string& path);

}  // namespace veltrix
