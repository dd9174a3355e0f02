#include "helper/desktop/pending_calls.h"

#include <systemd/sd-bus.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "helper/desktop/one_line.h"

namespace veltrix {
namespace {

struct SlotReleaser {
  void operator()(sd_bus_slot* slot) const { sd_bus_slot_unref(slot); }
};

}  // namespace

struct PendingCalls::Call {
  PendingCalls* owner = nullptr;
  Answered answered;
  std::unique_ptr<sd_bus_slot, SlotReleaser> slot;
  EventSourceHandle deadline;
};

namespace {

int answerArrived(sd_bus_message* reply, void* call, sd_bus_error* /*error*/) {
  auto* const pending = static_cast<PendingCalls::Call*>(call);
  const sd_bus_error* const failure = sd_bus_message_get_error(reply);
  if (failure == nullptr) {
    pending->owner->answer(pending, reply, Done{});
  } else {
    const char* const text = failure->message != nullptr ? failure->message : failure->name;
    pending->owner->answer(pending, nullptr, Error{sd_bus_error_get_errno(failure), oneLine(text), {}});
  }
  return 0;
}

int deadlinePassed(sd_event_source* /*source*/, std::uint64_t /*now*/, void* call) {
  auto* const pending = static_cast<PendingCalls::Call*>(call);
  pending->owner->answer(pending, nullptr, Error{ETIMEDOUT, "no answer", {}});
  return 0;
}

}  // namespace

PendingCalls::PendingCalls(sd_event* loop) : fLoop(loop) {}

PendingCalls::~PendingCalls() = default;

void PendingCalls::send(sd_bus* bus, sd_bus_message* message, std::chrono::milliseconds limit,
                        Answered answered) {
  const auto microseconds =
      static_cast<std::uint64_t>(std::chrono::duration_cast<std::chrono::microseconds>(limit).count());
  auto call = std::make_unique<Call>();
  call->owner = this;
  sd_bus_slot* slot = nullptr;
  // The bus' own time-out comes later than ours and only cleans up behind it.
  int result = sd_bus_call_async(bus, &slot, message, answerArrived, call.get(), 2 * microseconds);
  call->slot.reset(slot);
  sd_event_source* deadline = nullptr;
  if (result >= 0) {
    result = sd_event_add_time_relative(fLoop, &deadline, CLOCK_MONOTONIC, microseconds, 0, deadlinePassed,
                                        call.get());
  }
  call->deadline.reset(deadline);
  if (result < 0) {
    answered(nullptr, Error{-result, std::strerror(-result), {}});
    return;
  }
  call->answered = std::move(answered);
  fCalls.push_back(std::move(call));
}

void PendingCalls::answer(Call* call, sd_bus_message* reply, const Status& status) {
  const auto at = std::find_if(fCalls.begin(), fCalls.end(),
                               [call](const auto& pending) { return pending.get() == call; });
  // Out of the list first: whoever is answered may send the next one or end this object.
  const std::unique_ptr<Call> ended = std::move(*at);
  fCalls.erase(at);
  ended->answered(reply, status);
}

}  // namespace veltrix
