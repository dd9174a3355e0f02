#pragma once

#include <cstddef>
#include <string>

#include "util/file_descriptor.h"

namespace veltrix {

// Where the output of a program goes: to the user's journal under that identifier; without a journal to this
// process's own errors, and without those to nowhere.
FileDescriptor journalOutput(const std::string& identifier);

// What programs have written to a file so far, at most so many bytes of it; wherever the file is read, it
// stays there. Empty when it cannot be read.
std::string textFromStart(int file, std::size_t most);

}  // namespace veltrix
