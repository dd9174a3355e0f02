#pragma once

#include <functional>
#include <memory>

#include "platform/event_loop.h"
#include "util/result.h"

struct sd_login_monitor;

namespace veltrix {

struct SeatMonitorReleaser {
  void operator()(sd_login_monitor* monitor) const;
};

// Tells when another session comes to the screen. Without a login service it tells nothing.
class SeatWatch {
 public:
  explicit SeatWatch(std::function<void()> changed) : fChanged(std::move(changed)) {}
  SeatWatch(const SeatWatch&) = delete;
  SeatWatch& operator=(const SeatWatch&) = delete;

  // The loop must outlive the object.
  Status start(sd_event* loop);

  // For the loop.
  void changed();

 private:
  std::function<void()> fChanged;
  std::unique_ptr<sd_login_monitor, SeatMonitorReleaser> fMonitor;
  EventSourceHandle fSource;
};

// Whether the session that this process belongs to is at the screen; true when that cannot be told.
bool ownSessionIsActive();

}  // namespace veltrix
