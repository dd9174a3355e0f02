#pragma once

#include <string_view>

#include "util/result.h"

namespace veltrix {

// The error of a failed system call: `code` is an errno value, the message is "ACTION PATH: REASON".
Error systemError(int code, std::string_view action, std::string_view path);

}  // namespace veltrix
