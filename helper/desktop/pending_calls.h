#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <list>
#include <memory>

#include "platform/event_loop.h"
#include "platform/session_bus.h"
#include "util/result.h"

struct sd_bus_slot;

namespace veltrix {

// Method calls on D-Bus whose answers have not come yet. A time-out of its own ends each, because a bus that
// never lets the connection in leaves the calls waiting without any.
class PendingCalls {
 public:
  // The reply, or null and the reason. The reply is only there during the call.
  using Answered = std::function<void(sd_bus_message* reply, const Status& status)>;

  // The loop must outlive the object; whatever is still pending at its end is never answered.
  explicit PendingCalls(sd_event* loop);
  ~PendingCalls();
  PendingCalls(const PendingCalls&) = delete;
  PendingCalls& operator=(const PendingCalls&) = delete;

  // Calls `answered` once, from the loop or, when the call cannot even be queued, before it returns.
  void send(sd_bus* bus, sd_bus_message* message, std::chrono::milliseconds limit, Answered answered);

  std::size_t size() const { return fCalls.size(); }

  struct Call;
  // For the loop.
  void answer(Call* call, sd_bus_message* reply, const Status& status);

 private:
  sd_event* fLoop;
  std::list<std::unique_ptr<Call>> fCalls;
};

}  // namespace veltrix
