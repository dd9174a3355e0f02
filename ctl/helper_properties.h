#pragma once

#include "ctl/plist_json.h"
#include "platform/session_bus.h"
#include "util/result.h"

namespace veltrix::ctl {

// Every property of the helper's interface on the session bus, by name; structs become arrays and byte
// arrays hexadecimal text. Waits at most two seconds. The error's message says who does not answer.
Result<Json> readHelperProperties();

// The same on a connection that is there already.
Result<Json> readHelperProperties(sd_bus* bus, BusDeadline deadline);

// What the message has next, a table of names and values, in the same form.
Json readPropertyTable(sd_bus_message* message);

}  // namespace veltrix::ctl
