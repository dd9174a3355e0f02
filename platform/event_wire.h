#pragma once

#include "platform/session_bus.h"
#include "platform/typed_events.h"

// How an event looks on the bus: a call of Send(class u, id u, keyword u, type u, data ay) -> (type u, data
// ay). No parameter, either way, is keyword and type 0 with no data.
namespace veltrix {

inline constexpr const char* kEventsObject = "/com/aldmoor/Events";
inline constexpr const char* kEventsInterface = "com.aldmoor.Events1";
inline constexpr const char* kNotHandledError = "com.aldmoor.Events1.Error.NotHandled";
inline constexpr const char* kTooLargeError = "com.aldmoor.Events1.Error.TooLarge";

// An event as its receiver sees it.
struct IncomingEvent {
  std::uint32_t eventClass = 0;
  std::uint32_t eventId = 0;
  EventParameter parameter;
};

// The call that carries the event; it never starts a service. Null without memory.
BusMessageHandle makeEventCall(sd_bus* bus, const Event& event, bool withReply);

// Reads a call; kEventParameterError for data over the limit, kEventNotHandled for anything else malformed.
std::int32_t readEventCall(sd_bus_message* call, IncomingEvent* event);

// Answers a call with the reply, or with the error that stands for a status other than 0.
int answerEventCall(sd_bus_message* call, std::int32_t status, const EventReply& reply);

// Reads an answer, an empty one as one without parameter; kEventNotHandled, with `reply` untouched, when it
// is malformed.
std::int32_t readEventReply(sd_bus_message* answer, EventReply* reply);

// Queues the event on the connection and writes what can be written at once.
std::int32_t queueEvent(sd_bus* bus, const Event& event);

}  // namespace veltrix
