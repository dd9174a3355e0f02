#include "ctl/connected_devices.h"

#include <string>

#include "helperlink/helper_messaging.h"
#include "platform/typed_events.h"

namespace veltrix::ctl {
namespace {

std::string reasonOf(std::int32_t status) {
  switch (status) {
    case kEventNoSuchProcess:
      return "VeltrixHelper is not running";
    case kEventTimedOut:
      return "VeltrixHelper did not answer in time";
    case kEventConnectionInvalid:
      return "there is no session bus, or VeltrixHelper ended before it answered";
    default:
      return "VeltrixHelper could not be asked (status " + std::to_string(status) + ")";
  }
}

}  // namespace

Result<VeltrixDeviceList> connectedDevices() {
  VeltrixDeviceList list{};
  if (const auto status = VeltrixGetConnectedDevices(&list); status != 0) {
    return Error{status, reasonOf(status), {}};
  }
  return list;
}

}  // namespace veltrix::ctl
