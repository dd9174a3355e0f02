#include "platform/session_bus.h"

#include <systemd/sd-bus.h>

#include <cerrno>
#include <cstring>

namespace veltrix {

namespace {

Error busError(int negativeErrno, const char* what) {
  return Error{-negativeErrno, std::string(what) + ": " + std::strerror(-negativeErrno), std::nullopt};
}

}  // namespace

void BusCloser::operator()(sd_bus* bus) const {
  sd_bus_close_unref(bus);
}

void BusMessageReleaser::operator()(sd_bus_message* message) const {
  sd_bus_message_unref(message);
}

void BusSlotReleaser::operator()(sd_bus_slot* slot) const {
  sd_bus_slot_unref(slot);
}

Result<BusHandle> startSessionBus(const std::string& address) {
  sd_bus* bus = nullptr;
  int result = 0;
  if (address.empty()) {
    result = sd_bus_open_user(&bus);
    if (result < 0)
      return busError(result, "cannot connect to the session bus");
    return BusHandle(bus);
  }
  result = sd_bus_new(&bus);
  if (result < 0)
    return busError(result, "cannot create a bus connection");
  BusHandle handle(bus);
  result = sd_bus_set_address(bus, address.c_str());
  if (result >= 0)
    result = sd_bus_set_bus_client(bus, 1);
  // As on the user's own bus: whoever may connect is the same user.
  if (result >= 0)
    result = sd_bus_set_trusted(bus, 1);
  if (result >= 0)
    result = sd_bus_start(bus);
  if (result < 0)
    return busError(result, ("cannot connect to the bus at " + address).c_str());
  return handle;
}

std::uint64_t microsecondsUntil(BusDeadline deadline) {
  const auto left =
      std::chrono::duration_cast<std::chrono::microseconds>(deadline - std::chrono::steady_clock::now());
  return left.count() > 0 ? static_cast<std::uint64_t>(left.count()) : 0;
}

Status waitUntilReady(sd_bus* bus, BusDeadline deadline) {
  for (;;) {
    const int ready = sd_bus_is_ready(bus);
    if (ready < 0)
      return busError(ready, "the bus closed the connection");
    if (ready > 0)
      return Done{};
    const int worked = sd_bus_process(bus, nullptr);
    if (worked < 0)
      return busError(worked, "the bus refused the connection");
    if (worked > 0)
      continue;
    const std::uint64_t left = microsecondsUntil(deadline);
    if (left == 0)
      return busError(-ETIMEDOUT, "the bus did not answer");
    const int waited = sd_bus_wait(bus, left);
    if (waited < 0 && waited != -EINTR)
      return busError(waited, "the bus connection failed");
  }
}

Result<BusHandle> openSessionBus(const std::string& address, BusDeadline deadline) {
  Result<BusHandle> bus = startSessionBus(address);
  if (!bus)
    return bus;
  const Status ready = waitUntilReady(bus.value().get(), deadline);
  if (!ready)
    return ready.error();
  return bus;
}

}  // namespace veltrix
