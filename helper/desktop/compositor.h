#pragma once

#include <chrono>
#include <deque>
#include <string>
#include <string_view>
#include <utility>

#include "helper/commands/command_session.h"
#include "platform/event_loop.h"
#include "util/file_descriptor.h"

namespace veltrix {

// Commands in the language of sway or i3, over their socket. One after the other, each over a connection of
// its own, so that a compositor that was started anew is found; one that does not answer fails all that wait.
class Compositor {
 public:
  // The loop must outlive the object; what has not ended with it is not told. Without a path every command
  // fails.
  Compositor(sd_event* loop, std::string socketPath, std::chrono::milliseconds limit);

  void tell(std::string_view command, Ended ended);

  // For the loop.
  void exchange();
  void timePassed();

 private:
  void begin();
  Status connect();
  Status send();
  Result<bool> receive();
  void end(const Status& status);
  void failAll(const Error& error);

  sd_event* fLoop;
  std::string fPath;
  std::chrono::milliseconds fLimit;
  std::deque<std::pair<std::string, Ended>> fWaiting;  // the first one is under way
  FileDescriptor fSocket;
  std::string fUnsent;
  std::string fReceived;
  EventSourceHandle fReady;
  EventSourceHandle fDeadline;
};

}  // namespace veltrix
