#pragma once

#include <chrono>
#include <string>
#include <vector>

#include "platform/process_table.h"
#include "util/result.h"

namespace veltrix {

// The user's running processes, in rising order of their pid, whose program is the file at `program`, also
// when that file has been replaced since.
std::vector<ProcessSerialNumber> processesOfProgram(const std::string& program);

// Asks the process to end (SIGTERM) and waits for that, at most for `patience`. Success when it has ended, or
// ran no more; ETIMEDOUT when it goes on.
Status endProcess(const ProcessSerialNumber& process, std::chrono::milliseconds patience);

}  // namespace veltrix
