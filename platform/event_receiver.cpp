#include "platform/event_receiver.h"

#include <systemd/sd-bus.h>

#include <cerrno>
#include <cstring>
#include <utility>

namespace veltrix {

namespace {

int takeSend(sd_bus_message* call, void* receiver, sd_bus_error* /*error*/) {
  return static_cast<EventReceiver*>(receiver)->take(call);
}

constexpr sd_bus_vtable kEventsTable[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_METHOD_WITH_ARGS("Send", SD_BUS_ARGS("u", class, "u", id, "u", keyword, "u", type, "ay", data),
                            SD_BUS_RESULT("u", type, "ay", data), takeSend, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_VTABLE_END,
};

}  // namespace

Result<std::unique_ptr<EventReceiver>> EventReceiver::onBus(sd_bus* bus, EventHandler handler) {
  std::unique_ptr<EventReceiver> receiver(new EventReceiver(std::move(handler)));
  const int result = sd_bus_add_object_vtable(bus, &receiver->fSlot, kEventsObject, kEventsInterface,
                                              kEventsTable, receiver.get());
  if (result < 0) {
    return Error{-result, std::string("cannot offer events on the bus: ") + std::strerror(-result),
                 std::nullopt};
  }
  return receiver;
}

EventReceiver::~EventReceiver() {
  sd_bus_slot_unref(fSlot);
}

int EventReceiver::take(sd_bus_message* call) {
  IncomingEvent event;
  EventReply reply;
  std::int32_t status = readEventCall(call, &event);
  if (status == 0)
    status = fHandler(event, &reply);
  return answerEventCall(call, status, reply);
}

Result<bool> claimBusName(sd_bus* bus, const std::string& name) {
  const int result = sd_bus_request_name(bus, name.c_str(), 0);
  if (result >= 0)
    return true;
  if (result == -EEXIST)
    return false;
  return Error{-result, "cannot claim the bus name " + name + ": " + std::strerror(-result), std::nullopt};
}

}  // namespace veltrix
