#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <vector>

#include "driverlink/packets.h"

namespace veltrix {

// What the command line asks for.
struct DriverOptions {
  enum class Action { kRun, kShowHelp, kShowVersion, kRefuse };
  Action action = Action::kRun;
  std::string socketPath = kDriverSocketPath;
  std::optional<uid_t> user;  // whom it serves; without, the user at the screen
  std::string error;          // with kRefuse, one line
};

// `arguments` without the program's name.
DriverOptions parseDriverOptions(const std::vector<std::string>& arguments);

extern const char* const kDriverUsage;

}  // namespace veltrix
