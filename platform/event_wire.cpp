#include "platform/event_wire.h"

#include <systemd/sd-bus.h>

namespace veltrix {

namespace {

int readBytes(sd_bus_message* message, std::span<const std::byte>* bytes) {
  const void* data = nullptr;
  std::size_t size = 0;
  const int result = sd_bus_message_read_array(message, 'y', &data, &size);
  if (result < 0)
    return result;
  *bytes = {static_cast<const std::byte*>(data), size};
  return 0;
}

}  // namespace

BusMessageHandle makeEventCall(sd_bus* bus, const Event& event, bool withReply) {
  sd_bus_message* raw = nullptr;
  if (sd_bus_message_new_method_call(bus, &raw, event.target().busName().c_str(), kEventsObject,
                                     kEventsInterface, "Send") < 0) {
    return nullptr;
  }
  BusMessageHandle call(raw);
  const EventParameter& parameter = event.parameter();
  int result = sd_bus_message_set_auto_start(raw, 0);
  if (result >= 0 && !withReply)
    result = sd_bus_message_set_expect_reply(raw, 0);
  if (result >= 0) {
    result = sd_bus_message_append(raw, "uuuu", event.eventClass(), event.eventId(), parameter.keyword(),
                                   parameter.type());
  }
  if (result >= 0) {
    result = sd_bus_message_append_array(raw, 'y', parameter.data().data(), parameter.data().size());
  }
  return result < 0 ? nullptr : std::move(call);
}

std::int32_t readEventCall(sd_bus_message* call, IncomingEvent* event) {
  std::uint32_t keyword = 0;
  std::uint32_t type = 0;
  std::span<const std::byte> bytes;
  if (sd_bus_message_read(call, "uuuu", &event->eventClass, &event->eventId, &keyword, &type) < 0 ||
      readBytes(call, &bytes) < 0) {
    return kEventNotHandled;
  }
  if (bytes.size() > kMaximumEventBytes)
    return kEventParameterError;
  event->parameter = EventParameter(keyword, type, bytes);
  return 0;
}

int answerEventCall(sd_bus_message* call, std::int32_t status, const EventReply& reply) {
  if (sd_bus_message_get_expect_reply(call) == 0)
    return 1;
  if (status == kEventParameterError) {
    return sd_bus_reply_method_errorf(call, kTooLargeError, "More than %zu bytes in one event",
                                      kMaximumEventBytes);
  }
  if (status != 0)
    return sd_bus_reply_method_errorf(call, kNotHandledError, "Event not handled (%d)", status);
  sd_bus_message* raw = nullptr;
  int result = sd_bus_message_new_method_return(call, &raw);
  const BusMessageHandle answer(raw);
  const EventParameter& parameter = reply.parameter();
  if (result >= 0)
    result = sd_bus_message_append(raw, "u", parameter.type());
  if (result >= 0) {
    result = sd_bus_message_append_array(raw, 'y', parameter.data().data(), parameter.data().size());
  }
  return result < 0 ? result : sd_bus_send(nullptr, raw, nullptr);
}

std::int32_t readEventReply(sd_bus_message* answer, EventReply* reply) {
  if (sd_bus_message_has_signature(answer, "") > 0) {
    *reply = EventReply();
    return 0;
  }
  std::uint32_t type = 0;
  std::span<const std::byte> bytes;
  if (sd_bus_message_has_signature(answer, "uay") <= 0 || sd_bus_message_read(answer, "u", &type) < 0 ||
      readBytes(answer, &bytes) < 0 || bytes.size() > kMaximumEventBytes) {
    return kEventNotHandled;
  }
  // The one parameter of a reply is the direct one.
  *reply = EventReply(EventParameter(kDirectParameter, type, bytes));
  return 0;
}

std::int32_t queueEvent(sd_bus* bus, const Event& event) {
  const BusMessageHandle call = makeEventCall(bus, event, false);
  if (call == nullptr || sd_bus_send(bus, call.get(), nullptr) < 0)
    return kEventConnectionInvalid;
  return 0;
}

}  // namespace veltrix
