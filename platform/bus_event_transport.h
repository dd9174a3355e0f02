#pragma once

#include <memory>
#include <string>

#include "platform/typed_events.h"

namespace veltrix {

// Events over the bus at `address`, the session bus when it is empty. Connects at the first event, keeps the
// connection, and connects anew at the next event after the bus has gone. Neither connecting nor writing ever
// takes longer than the time-out of the call, 250 ms for an event without a reply.
std::unique_ptr<EventTransport> makeBusEventTransport(std::string address = {});

}  // namespace veltrix
