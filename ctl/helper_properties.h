#pragma once

#include "ctl/plist_json.h"
#include "util/result.h"

namespace veltrix::ctl {

// Every property of the helper's interface on the session bus, by name; structs become arrays and byte
// arrays hexadecimal text. Waits at most two seconds. The error's message says who does not answer.
Result<Json> readHelperProperties();

}  // namespace veltrix::ctl
