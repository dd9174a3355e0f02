#pragma once

#include "helperlink/device_list.h"
#include "util/result.h"

namespace veltrix::ctl {

// The trackballs that the helper sees. The error's message says who does not answer.
Result<VeltrixDeviceList> connectedDevices();

}  // namespace veltrix::ctl
