#pragma once

#include <string>

#include "util/file_descriptor.h"
#include "util/result.h"

namespace veltrix {

// The listening socket that the service manager has passed to this process; -1 without one. An error when
// what was passed is something else.
Result<FileDescriptor> passedSocket();

// A listening socket at that path, which everybody may connect to. Makes the folder, not the ones above it,
// and takes the place of a socket that nobody listens to any more. An error when somebody does.
Result<FileDescriptor> listenAt(const std::string& path);

}  // namespace veltrix
