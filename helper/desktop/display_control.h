#pragma once

#include <chrono>
#include <string>

#include "helper/commands/command_session.h"
#include "helper/desktop/compositor.h"
#include "helper/desktop/window_manager.h"

namespace veltrix {

// Where the session's display is; an empty text is one that it does not have.
struct DisplayAddresses {
  std::string x11;         // as in DISPLAY
  std::string compositor;  // the socket for commands, as in SWAYSOCK or I3SOCK

  static DisplayAddresses ofEnvironment();
};

// The window manager and the compositor of the session.
class SessionDisplay : public DisplayControl {
 public:
  // The loop must outlive the object; what has not ended with it is not told. An X server, window manager or
  // compositor that does not answer within the limit fails what was asked of it.
  SessionDisplay(sd_event* loop, const DisplayAddresses& addresses,
                 std::chrono::milliseconds limit = std::chrono::seconds(2));

  void operate(const DisplayAttempt& attempt, Ended ended) override;
  void tellCompositor(std::string_view command, Ended ended) override;

 private:
  bool fHasX11;
  WindowManager fWindowManager;
  Compositor fCompositor;
};

}  // namespace veltrix
