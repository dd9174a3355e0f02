#pragma once

#include <libudev.h>

#include <cstdint>
#include <string_view>

#include "util/hex_number.h"

namespace veltrix {

// An attribute that the kernel gives a device; empty when it has none of that name, and for no device at all.
// The text lives as long as the device.
inline std::string_view udevAttribute(udev_device* device, const char* name) {
  const char* value = device != nullptr ? udev_device_get_sysattr_value(device, name) : nullptr;
  return value != nullptr ? value : "";
}

// An attribute of up to four hexadecimal digits, as identifiers and versions are; 0 when it is no such
// number.
inline std::uint16_t udevHexAttribute(udev_device* device, const char* name) {
  std::uint16_t value = 0;
  parseHex(udevAttribute(device, name), 4, &value);
  return value;
}

}  // namespace veltrix
