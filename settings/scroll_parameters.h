#pragma once

#include "driverlink/scroll_parameters.h"
#include "platform/property_list.h"

namespace veltrix {

// The scroll parameters of a device entry, as they stand there; each that is missing is 0.
ScrollParameters scrollParametersOf(const plist::Dictionary& entry);

}  // namespace veltrix
