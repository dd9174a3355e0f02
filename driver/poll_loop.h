#pragma once

#include <cstdint>

#include "driver/engine/engine_types.h"
#include "util/result.h"

namespace veltrix {

// Somebody with a descriptor in the loop.
class PollHandler {
 public:
  virtual ~PollHandler() = default;
  // `events` are EPOLL... bits. May add and remove descriptors, its own among them.
  virtual void ready(std::uint32_t events) noexcept = 0;
};

// Waits for descriptors and for one deadline; a single thread.
class PollLoop {
 public:
  virtual ~PollLoop() = default;
  // The descriptor stays the caller's, who removes it before it is closed. The handler must outlive that.
  virtual Status add(int descriptor, std::uint32_t events, PollHandler& handler) = 0;
  virtual void remove(int descriptor) noexcept = 0;
  // CLOCK_MONOTONIC; stands still between two waits.
  virtual Microseconds now() const noexcept = 0;
};

}  // namespace veltrix
