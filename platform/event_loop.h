#pragma once

#include <systemd/sd-event.h>

#include <memory>

namespace veltrix {

struct EventLoopReleaser {
  void operator()(sd_event* loop) const { sd_event_unref(loop); }
};
using EventLoopHandle = std::unique_ptr<sd_event, EventLoopReleaser>;

// A source that no longer fires once the handle ends.
struct EventSourceReleaser {
  void operator()(sd_event_source* source) const { sd_event_source_disable_unref(source); }
};
using EventSourceHandle = std::unique_ptr<sd_event_source, EventSourceReleaser>;

// Null without the means for it.
inline EventLoopHandle makeEventLoop() {
  sd_event* loop = nullptr;
  return sd_event_new(&loop) < 0 ? nullptr : EventLoopHandle(loop);
}

// Runs the loop until `*stopped` or until it has ended by itself (a connection that is set to end it was
// lost). Not to be stopped by sd_event_exit: that would flush the connections of the loop, which on a bus
// that hangs takes as long as the bus does.
inline void runEventLoop(sd_event* loop, const bool* stopped) {
  while (!*stopped && sd_event_get_state(loop) != SD_EVENT_FINISHED && sd_event_run(loop, UINT64_MAX) >= 0) {
  }
}

}  // namespace veltrix
