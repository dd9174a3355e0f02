#pragma once

#include <chrono>

#include "platform/session_bus.h"
#include "util/result.h"

// Calls to the running helper. The message of each error says who does not answer.
namespace veltrix::ctl {

inline constexpr const char* kHelperName = "com.aldmoor.VeltrixHelper";
inline constexpr const char* kHelperObject = "/com/aldmoor/VeltrixHelper";
inline constexpr const char* kHelperInterface = "com.aldmoor.VeltrixHelper1";

// How long a person waits for the helper, connecting included.
inline constexpr std::chrono::seconds kHelperPatience{2};

Result<BusHandle> openHelperBus(BusDeadline deadline);

// A call of the helper's object that starts no helper.
Result<BusMessageHandle> newHelperCall(sd_bus* bus, const char* interface, const char* method);

// Waits for the answer.
Result<BusMessageHandle> callHelper(sd_bus* bus, sd_bus_message* call, BusDeadline deadline);

}  // namespace veltrix::ctl
