#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

#include "util/file_descriptor.h"
#include "util/result.h"

namespace veltrix {

// A program that is to be started, and what it finds.
struct ProgramStart {
  std::vector<std::string> arguments{};    // the path of the program first
  std::vector<std::string> environment{};  // "NAME=value"
  std::string folder{};                    // where it runs; empty for the folder of this process
  int output = -1;                         // its standard output and errors, which the caller keeps open
  int errors = -1;                         // where they go elsewhere than the output
  int extra = -1;                          // is kExtraDescriptor there
};

inline constexpr int kExtraDescriptor = 3;

// A child of this process. Whoever has started it collects it, or it stays a zombie.
struct StartedProgram {
  pid_t pid = -1;
  FileDescriptor process;  // becomes readable when the program ends
};

// Starts a program without a shell: in a session of its own, with standard input from /dev/null, the standard
// signals, and no other descriptor than those named. Without an output it has this process's. Returns when
// the program has been executed or could not be.
Result<StartedProgram> startProgram(const ProgramStart& start);

// The outcome of the program, which is collected: Done for the exit status 0, else the reason, which begins
// with "exit status" or "signal". EAGAIN while it runs.
Status collectProgram(const StartedProgram& program);

}  // namespace veltrix
