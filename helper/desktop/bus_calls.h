#pragma once

#include <chrono>

#include "helper/commands/command_session.h"
#include "helper/desktop/media_player.h"
#include "helper/desktop/pending_calls.h"

struct sd_bus;

namespace veltrix {

struct BusCallLimits {
  std::chrono::milliseconds answer{2000};
  std::chrono::milliseconds person{60'000};  // where somebody may have to agree first
};

// Method calls for commands, on the session bus and on the system bus, which is opened when it is needed.
// A service that does not run is started only where the attempt says so.
class SessionBusCalls : public BusCalls {
 public:
  // The loop and the connection must outlive the object; the connection is attached to the loop already.
  SessionBusCalls(sd_event* loop, sd_bus* session, BusCallLimits limits = {});

  void call(const BusAttempt& attempt, Ended ended) override;
  void controlPlayer(const PlayerAttempt& attempt, Ended ended) override;

 private:
  Result<sd_bus*> busOf(const BusAttempt& attempt);

  sd_event* fLoop;
  sd_bus* fSession;
  BusCallLimits fLimits;
  BusHandle fSystem;
  PendingCalls fCalls;
  MediaPlayers fPlayers;
};

}  // namespace veltrix
