#include "helper/desktop/display_control.h"

#include <cstdlib>
#include <utility>

namespace veltrix {
namespace {

std::string variable(const char* name) {
  const char* const value = std::getenv(name);
  return value != nullptr ? value : "";
}

}  // namespace

DisplayAddresses DisplayAddresses::ofEnvironment() {
  const std::string sway = variable("SWAYSOCK");
  return {variable("DISPLAY"), sway.empty() ? variable("I3SOCK") : sway};
}

SessionDisplay::SessionDisplay(sd_event* loop, const DisplayAddresses& addresses,
                               std::chrono::milliseconds limit)
    : fHasX11(!addresses.x11.empty()),
      fWindowManager(loop, addresses.x11, limit),
      fCompositor(loop, addresses.compositor, limit) {}

void SessionDisplay::operate(const DisplayAttempt& attempt, Ended ended) {
  if (fHasX11) {
    fWindowManager.operate(attempt, std::move(ended));
  } else {
    ended(Error{0, "there is no X server", {}});
  }
}

void SessionDisplay::tellCompositor(std::string_view command, Ended ended) {
  fCompositor.tell(command, std::move(ended));
}

}  // namespace veltrix
