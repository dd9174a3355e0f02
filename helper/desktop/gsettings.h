#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include "helper/desktop/program_starter.h"

namespace veltrix {

// Runs gsettings with these words and hands over what it has printed, or why it did not end well. It counts
// as failed when it has not ended after `grace`. `read` may be called before this returns.
void runGsettings(ProgramStarter& starter, std::vector<std::string> words, std::chrono::microseconds grace,
                  std::function<void(const Result<std::string>&)> read);

}  // namespace veltrix
