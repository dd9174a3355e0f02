#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>

#include "helperlink/helper_protocol.h"
#include "platform/event_receiver.h"

namespace veltrix {

using DeviceState = std::array<std::byte, kDeviceStateBytes>;

// Takes a device state on the thread on which the event arrived; hands it on and returns without waiting.
using DeviceStateConsumer = std::function<void(const DeviceState& state)>;

// Names the one consumer of this process; an empty one lets device states pass unseen. When the function
// returns, the former consumer is not running and will not be called any more. Thread-safe, but not to be
// called from a consumer.
void setDeviceStateConsumer(DeviceStateConsumer consumer);

// Begins to take the helper's events for the pane on a thread of their own, until the process ends. Only the
// first call has an effect.
void installDeviceStateHandler();

}  // namespace veltrix

// Hands the 16 bytes of a device-state event to the consumer. Any other parameter is ignored. Always 0.
std::int16_t VeltrixDeviceStateHandler(const veltrix::IncomingEvent& event);
