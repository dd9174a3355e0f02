#pragma once

#include "platform/property_list.h"

namespace veltrix {

// A copy that shares nothing with the original, made through the binary form. Null when the value cannot be
// written as a property list.
plist::Dictionary mutableDeepAutoreleasedCopy(const plist::Dictionary& value);
plist::Array mutableDeepAutoreleasedCopy(const plist::Array& value);

}  // namespace veltrix
