#include "helper/desktop/child_environment.h"

#include <unistd.h>

#include <algorithm>
#include <array>

namespace veltrix {

namespace {

constexpr std::string_view kOwnPrefix = "VELTRIX_";

constexpr std::array<std::string_view, 17> kOwnVariables = {
    "XDG_ACTIVATION_TOKEN",
    "DESKTOP_STARTUP_ID",
    "DESKTOP_AUTOSTART_ID",
    "NOTIFY_SOCKET",
    "LISTEN_FDS",
    "LISTEN_PID",
    "LISTEN_FDNAMES",
    "WATCHDOG_USEC",
    "WATCHDOG_PID",
    "INVOCATION_ID",
    "JOURNAL_STREAM",
    "SYSTEMD_EXEC_PID",
    "MAINPID",
    "MANAGERPID",
    "MEMORY_PRESSURE_WATCH",
    "MEMORY_PRESSURE_WRITE",
    "GIO_LAUNCHED_DESKTOP_FILE",
};

}  // namespace

bool isOwnVariable(std::string_view name) {
  return name.starts_with(kOwnPrefix) ||
         std::find(kOwnVariables.begin(), kOwnVariables.end(), name) != kOwnVariables.end();
}

std::vector<std::string> childEnvironment() {
  std::vector<std::string> variables;
  for (char** each = environ; each != nullptr && *each != nullptr; ++each) {
    const std::string_view variable(*each);
    if (!isOwnVariable(variable.substr(0, variable.find('=')))) {
      variables.emplace_back(variable);
    }
  }
  return variables;
}

}  // namespace veltrix
