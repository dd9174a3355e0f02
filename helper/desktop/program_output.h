#pragma once

#include <string>

#include "util/file_descriptor.h"

namespace veltrix {

// Where the output of a program goes: to the user's journal under that identifier; without a journal to this
// process's own errors, and without those to nowhere.
FileDescriptor journalOutput(const std::string& identifier);

}  // namespace veltrix
