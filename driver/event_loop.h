#pragma once

#include <sys/epoll.h>

#include <array>
#include <optional>
#include <vector>

#include "driver/poll_loop.h"
#include "util/file_descriptor.h"

namespace veltrix {

// The loop over epoll. Sleeps until a descriptor is ready or the deadline has come, and wakes for nothing
// else.
class EventLoop final : public PollLoop {
 public:
  // Before anything else.
  Status start();

  Status add(int descriptor, std::uint32_t events, PollHandler& handler) override;
  void remove(int descriptor) noexcept override;  // nothing when it was not added
  Microseconds now() const noexcept override;

  // Waits, then calls the handlers of what is ready. Returns at the deadline at the latest; kNever is none.
  Status waitUntil(Microseconds deadline) noexcept;

 private:
  void arm(Microseconds deadline) noexcept;

  static constexpr std::size_t kMostReady = 16;

  FileDescriptor fPoll;
  FileDescriptor fTimer;
  Microseconds fArmed = kNever;
  mutable std::optional<Microseconds> fNow;  // once somebody has asked since the last waking up
  std::vector<PollHandler*> fHandlers;       // by descriptor; null for none
  std::array<epoll_event, kMostReady> fReady{};
  std::size_t fReadyCount = 0;
};

}  // namespace veltrix
