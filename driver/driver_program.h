#pragma once

#include "driver/driver_options.h"

namespace veltrix {

inline constexpr int kExitDone = 0;
inline constexpr int kExitCannotRun = 1;
inline constexpr int kExitUsage = 2;

// Serves until SIGTERM or SIGINT and returns the program's exit status. Says on standard error why it cannot.
int runDriver(const DriverOptions& options);

}  // namespace veltrix
