#pragma once

#include <optional>
#include <string_view>

#include "driver/device_monitor.h"

struct udev_device;

namespace veltrix {

// What the event node is to the driver; nothing when it is none of a trackball or keyboard, or one of the
// driver's own.
std::optional<InputNode> inputNodeOf(udev_device* node);

// Whether a bitmap as in the attributes "capabilities/...", hexadecimal words with the last one first in
// value, has the bit.
bool hasCapability(std::string_view bitmap, unsigned bit);

}  // namespace veltrix
