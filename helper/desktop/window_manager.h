#pragma once

#include <chrono>
#include <deque>
#include <optional>
#include <string>
#include <utility>

#include "helper/commands/command_session.h"
#include "helper/desktop/window_requests.h"
#include "helper/desktop/x11_link.h"

namespace veltrix {

// Asks the window manager of an X server, and the server itself for its screens. One operation after the
// other; a server that does not answer fails all that wait, and the next one connects anew.
class WindowManager {
 public:
  // The loop must outlive the object; what has not ended with it is not told.
  WindowManager(sd_event* loop, std::string display, std::chrono::milliseconds limit);

  void operate(const DisplayAttempt& attempt, Ended ended);

 private:
  using Replies = X11Link::Replies;

  void begin();
  void askAtoms();
  void askRoot();
  void askWindow(const RootState& root);
  void request(const RootState& root, const WindowState& window);
  void askScreenPower();
  void askScreenState();
  void turnOffScreen(bool isEnabled);
  unsigned ask(xcb_window_t window, X11Atom property) const;
  void end(const Status& status);
  void fail(const Error& error);

  X11Link fLink;
  X11Atoms fAtoms;
  bool fKnowsAtoms = false;
  std::deque<std::pair<DisplayAttempt, Ended>> fWaiting;  // the first one is under way
};

}  // namespace veltrix
