#pragma once

#include <string_view>

#include "util/phrase.h"

namespace veltrix {

// What the system says of an errno value.
Phrase systemReason(int code);

// The error of a failed system call: `code` is an errno value, the message is "ACTION PATH: REASON".
Error systemError(int code, std::string_view action, std::string_view path);

}  // namespace veltrix
