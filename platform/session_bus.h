#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "util/result.h"

struct sd_bus;
struct sd_bus_message;
struct sd_bus_slot;

namespace veltrix {

struct BusCloser {
  void operator()(sd_bus* bus) const;
};
// A connection; its end closes it without waiting for what is still queued.
using BusHandle = std::unique_ptr<sd_bus, BusCloser>;

struct BusMessageReleaser {
  void operator()(sd_bus_message* message) const;
};
using BusMessageHandle = std::unique_ptr<sd_bus_message, BusMessageReleaser>;

// What was registered on a connection, or waits for an answer there; its end takes that back.
struct BusSlotReleaser {
  void operator()(sd_bus_slot* slot) const;
};
using BusSlotHandle = std::unique_ptr<sd_bus_slot, BusSlotReleaser>;

using BusDeadline = std::chrono::steady_clock::time_point;

// Begins to connect to the bus at `address`, or to the session bus when it is empty. Does not wait.
Result<BusHandle> startSessionBus(const std::string& address);

// Works on the connection until it is ready for calls. An error with ETIMEDOUT at the deadline, which a bus
// that accepts but never answers reaches.
Status waitUntilReady(sd_bus* bus, BusDeadline deadline);

// startSessionBus and waitUntilReady.
Result<BusHandle> openSessionBus(const std::string& address, BusDeadline deadline);

// Microseconds until the deadline, 0 when it has passed.
std::uint64_t microsecondsUntil(BusDeadline deadline);

}  // namespace veltrix
