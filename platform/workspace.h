#pragma once

#include <string>

#include "util/result.h"

namespace veltrix {

// Starts the application in the folder PATH ("Name.app", its program is PATH/Name) as a process of its own
// that outlives this one, with standard input from /dev/null. Returns when the program has been executed or
// could not be; the child is never left as a zombie of this process.
Status launchApplication(const std::string& path);

}  // namespace veltrix
