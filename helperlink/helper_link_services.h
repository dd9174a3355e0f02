#pragma once

#include "platform/process_table.h"
#include "platform/typed_events.h"

namespace veltrix {

// What the functions of helper_messaging.h reach the system through. A null member stands for the real one:
// the processes of this user, the session bus.
struct HelperLinkServices {
  ProcessTable* processes = nullptr;
  EventTransport* events = nullptr;
};

// Puts other services in place for the whole process and returns those that were in place. The objects stay
// the caller's and must live until they are replaced. Not thread-safe, like the functions that use them.
HelperLinkServices setHelperLinkServices(const HelperLinkServices& services);

}  // namespace veltrix
