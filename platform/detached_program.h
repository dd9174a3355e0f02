#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "util/result.h"

namespace veltrix {

// Starts the program at the path `arguments[0]` with these arguments as a process of its own that outlives
// this one, without a shell and with standard input from /dev/null. Returns when the program has been
// executed or could not be; the child is never left as a zombie of this process. Thread-safe.
Status startDetached(const std::vector<std::string>& arguments);

// The first executable file of that name in the absolute folders of PATH; empty when there is none.
std::string programInPath(std::string_view name);

}  // namespace veltrix
