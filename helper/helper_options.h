#pragma once

#include <optional>
#include <string>
#include <vector>

#include "helper/simulated_device_source.h"

namespace veltrix {

// What the command line asks for.
struct HelperOptions {
  enum class Action { kRun, kShowHelp, kShowVersion, kRefuse };
  Action action = Action::kRun;
  std::optional<std::vector<SimulatedDevice>> simulated;  // given: these instead of the real ones
  std::optional<std::string> driverSocket;                // given: there, even with simulated trackballs
  bool isKept = true;                                     // a successor is to follow when it is killed
  std::string error;                                      // with kRefuse, one line
};

// `arguments` without the program's name.
HelperOptions parseHelperOptions(const std::vector<std::string>& arguments);

extern const char* const kHelperUsage;

}  // namespace veltrix
