#pragma once

#include <string>
#include <vector>

#include "tests/support/child_process.h"

namespace veltrix::testing {

// What a program left behind.
struct ProgramRun {
  int exitCode = -1;  // 128 plus the signal when one ended it
  std::string output;
  std::string errors;
};

// Runs a program to its end with standard input from /dev/null.
ProgramRun runProgram(const std::vector<std::string>& arguments, const EnvironmentChanges& environment);

}  // namespace veltrix::testing
