#include "helperlink/device_state.h"

#include <mutex>
#include <utility>

namespace veltrix {

namespace {

struct ConsumerSlot {
  std::mutex mutex;
  DeviceStateConsumer consumer;
};

ConsumerSlot& consumerSlot() {
  static ConsumerSlot slot;
  return slot;
}

std::int32_t dispatchPaneEvent(const IncomingEvent& event, EventReply* /*reply*/) {
  if (event.eventClass != kVeltrixEventClass || event.eventId != kDeviceStateEvent)
    return kEventNotHandled;
  return VeltrixDeviceStateHandler(event);
}

}  // namespace

void setDeviceStateConsumer(DeviceStateConsumer consumer) {
  ConsumerSlot& slot = consumerSlot();
  const std::lock_guard<std::mutex> lock(slot.mutex);
  slot.consumer = std::move(consumer);
}

void installDeviceStateHandler() {
  consumerSlot();  // made before the thread that uses it, and so destroyed after it
  static const EventReceiverThread kReceiver("VeltrixPane", dispatchPaneEvent);
}

}  // namespace veltrix

std::int16_t VeltrixDeviceStateHandler(const veltrix::IncomingEvent& event) {
  veltrix::DeviceState state{};
  std::size_t size = 0;
  const std::int32_t status = event.parameter.read(veltrix::kDirectObjectKeyword, veltrix::kDeviceStateType,
                                                   state.data(), state.size(), &size);
  if (status != 0 || size != state.size())
    return 0;
  veltrix::ConsumerSlot& slot = veltrix::consumerSlot();
  const std::lock_guard<std::mutex> lock(slot.mutex);
  if (slot.consumer)
    slot.consumer(state);
  return 0;
}
