#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "util/result.h"

namespace veltrix {

// What runs a script, by its "#!" line as the kernel reads it: the absolute path of a program and at most one
// argument, which is the rest of the line. A text without such a line is one for /bin/sh. An error for an
// interpreter that has no absolute path.
Result<std::vector<std::string>> interpreterOf(std::string_view script);

}  // namespace veltrix
