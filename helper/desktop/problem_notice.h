#pragma once

#include <cstdint>
#include <string>

#include "helper/desktop/pending_calls.h"

namespace veltrix {

// Tells the person at the screen, by the desktop's notifications, that a command failed: whoever presses a
// button and sees nothing happen looks neither into the journal nor at a status. A new notice takes the place
// of the former one, so that a button that is pressed again and again does not fill the screen. Does nothing
// where nobody shows notifications.
class ProblemNotice {
 public:
  // The session's bus must be attached to the loop; both must outlive the notice.
  ProblemNotice(sd_event* loop, sd_bus* bus) : fBus(bus), fCalls(loop) {}

  // UTF-8, for a person; shown as plain text.
  void show(const std::string& title, const std::string& text);

 private:
  sd_bus* fBus;
  std::uint32_t fShown = 0;  // the desktop's number for the latest, 0 for none
  PendingCalls fCalls;
};

}  // namespace veltrix
