#include "platform/bus_event_transport.h"

#include <systemd/sd-bus.h>

#include <cerrno>
#include <string_view>
#include <utility>

#include "platform/event_wire.h"

namespace veltrix {

namespace {

// An event without a reply waits for nothing but room in the socket to the bus.
constexpr std::chrono::milliseconds kWriteTimeout{250};

// Old answers and signals that are read away before a call; more than that can wait for the next one.
constexpr int kMostStaleMessages = 1000;

bool meansDisconnected(int result) {
  return result == -ECONNRESET || result == -ENOTCONN || result == -EPIPE || result == -ESHUTDOWN;
}

// A time-out of ours and a peer that went away both come as ETIMEDOUT; only the error's name tells.
std::int32_t statusOf(int result, const sd_bus_error& error) {
  const std::string_view name = error.name != nullptr ? error.name : "";
  if (name == SD_BUS_ERROR_SERVICE_UNKNOWN || name == SD_BUS_ERROR_NAME_HAS_NO_OWNER)
    return kEventNoSuchProcess;
  if (name == SD_BUS_ERROR_NO_REPLY || name == SD_BUS_ERROR_DISCONNECTED)
    return kEventConnectionInvalid;
  if (name == SD_BUS_ERROR_TIMEOUT || result == -ETIMEDOUT)
    return kEventTimedOut;
  return meansDisconnected(result) ? kEventConnectionInvalid : kEventNotHandled;
}

class BusError {
 public:
  BusError() = default;
  ~BusError() { sd_bus_error_free(&fError); }
  BusError(const BusError&) = delete;
  BusError& operator=(const BusError&) = delete;
  sd_bus_error* get() { return &fError; }

 private:
  sd_bus_error fError = SD_BUS_ERROR_NULL;
};

class BusEventTransport final : public EventTransport {
 public:
  explicit BusEventTransport(std::string address) : fAddress(std::move(address)) {}

  std::int32_t sendWaitingForReply(const Event& event, std::chrono::milliseconds timeout,
                                   EventReply* reply) override;
  std::int32_t sendWithoutReply(const Event& event) override;

 private:
  std::int32_t connect(BusDeadline deadline);
  std::int32_t flush(BusDeadline deadline);
  void dropDeadConnection();

  std::string fAddress;
  BusHandle fBus;
};

void BusEventTransport::dropDeadConnection() {
  int worked = 1;
  for (int i = 0; fBus != nullptr && worked > 0 && i < kMostStaleMessages; ++i) {
    worked = sd_bus_process(fBus.get(), nullptr);
  }
  if (worked < 0 || sd_bus_is_open(fBus.get()) <= 0)
    fBus.reset();
}

std::int32_t BusEventTransport::connect(BusDeadline deadline) {
  if (fBus != nullptr)
    dropDeadConnection();
  if (fBus == nullptr) {
    Result<BusHandle> bus = startSessionBus(fAddress);
    if (!bus)
      return kEventConnectionInvalid;
    fBus = std::move(bus.value());
  }
  const Status ready = waitUntilReady(fBus.get(), deadline);
  if (ready)
    return 0;
  fBus.reset();
  return ready.error().code == ETIMEDOUT ? kEventTimedOut : kEventConnectionInvalid;
}

std::int32_t BusEventTransport::flush(BusDeadline deadline) {
  for (;;) {
    std::uint64_t queued = 0;
    int result = sd_bus_get_n_queued_write(fBus.get(), &queued);
    if (result >= 0 && queued == 0)
      return 0;
    if (result >= 0)
      result = sd_bus_process(fBus.get(), nullptr);
    if (result > 0)
      continue;
    const std::uint64_t left = microsecondsUntil(deadline);
    if (result == 0 && left == 0)
      return kEventTimedOut;
    if (result == 0)
      result = sd_bus_wait(fBus.get(), left);
    if (result < 0 && result != -EINTR) {
      fBus.reset();
      return kEventConnectionInvalid;
    }
  }
}

std::int32_t BusEventTransport::sendWaitingForReply(const Event& event, std::chrono::milliseconds timeout,
                                                    EventReply* reply) {
  const BusDeadline deadline = std::chrono::steady_clock::now() + timeout;
  const std::int32_t connected = connect(deadline);
  if (connected != 0)
    return connected;
  const BusMessageHandle call = makeEventCall(fBus.get(), event, true);
  if (call == nullptr)
    return kEventNotHandled;
  const std::uint64_t left = microsecondsUntil(deadline);
  if (left == 0)
    return kEventTimedOut;  // 0 would mean sd-bus's own, long time-out
  BusError error;
  sd_bus_message* raw = nullptr;
  const int result = sd_bus_call(fBus.get(), call.get(), left, error.get(), &raw);
  const BusMessageHandle answer(raw);
  if (result >= 0)
    return readEventReply(answer.get(), reply);
  const std::int32_t status = statusOf(result, *error.get());
  if (sd_bus_is_open(fBus.get()) <= 0)
    fBus.reset();
  return status;
}

std::int32_t BusEventTransport::sendWithoutReply(const Event& event) {
  const BusDeadline deadline = std::chrono::steady_clock::now() + kWriteTimeout;
  const std::int32_t connected = connect(deadline);
  if (connected != 0)
    return connected;
  const std::int32_t queued = queueEvent(fBus.get(), event);
  return queued != 0 ? queued : flush(deadline);
}

}  // namespace

std::unique_ptr<EventTransport> makeBusEventTransport(std::string address) {
  return std::make_unique<BusEventTransport>(std::move(address));
}

}  // namespace veltrix
