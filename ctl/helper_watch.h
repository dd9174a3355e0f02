#pragma once

#include <functional>
#include <string>

#include "ctl/monitor_text.h"
#include "util/result.h"

namespace veltrix::ctl {

struct HelperWatchCallbacks {
  std::function<void(const ButtonUse&)> buttonUsed;
  // The helper's properties DriverState, DriverVersion and DriverError: at the beginning and at each change.
  std::function<void(const std::string& state, const std::string& version, int error)> driverChanged;
};

// Asks the running helper for every use of a button and calls back for each, until SIGINT or SIGTERM. The
// error's message says what ended it otherwise.
Status watchHelper(const HelperWatchCallbacks& callbacks);

}  // namespace veltrix::ctl
