#include "driver/input_node.h"

#include <linux/input-event-codes.h>

#include <charconv>

#include "driver/output_identity.h"
#include "driverlink/device_family.h"
#include "util/udev_attributes.h"

namespace veltrix {

namespace {

bool hasProperty(udev_device* device, const char* name) {
  const char* value = udev_device_get_property_value(device, name);
  return value != nullptr && std::string_view(value) == "1";
}

bool isPointer(udev_device* input) {
  return hasCapability(udevAttribute(input, "capabilities/rel"), REL_X) &&
         hasCapability(udevAttribute(input, "capabilities/key"), BTN_LEFT);
}

// The version of the input device of a USB mouse is that of its protocol; only the USB device itself tells
// its own.
std::uint16_t versionOf(udev_device* node, udev_device* input) {
  udev_device* usbDevice = udev_device_get_parent_with_subsystem_devtype(node, "usb", "usb_device");
  if (usbDevice != nullptr)
    return productVersionFromBcd(udevHexAttribute(usbDevice, "bcdDevice"));
  return productVersionFromBcd(udevHexAttribute(input, "id/version"));
}

}  // namespace

std::optional<InputNode> inputNodeOf(udev_device* node) {
  const char* path = udev_device_get_devnode(node);
  udev_device* input = udev_device_get_parent_with_subsystem_devtype(node, "input", nullptr);
  const std::string_view name = udev_device_get_sysname(node);
  if (path == nullptr || input == nullptr || name.substr(0, 5) != "event")
    return std::nullopt;
  const std::uint16_t vendor = udevHexAttribute(input, "id/vendor");
  const std::uint16_t product = udevHexAttribute(input, "id/product");
  if (isOwnDevice(vendor, product))
    return std::nullopt;
  if (vendor == kTrackballVendor && isPointer(input)) {
    const DeviceAddress address{vendor, product, versionOf(node, input), 0};
    return InputNode{InputNode::Kind::kTrackball, path, address};
  }
  if (hasProperty(node, "ID_INPUT_KEYBOARD"))
    return InputNode{InputNode::Kind::kKeyboard, path, {}};
  return std::nullopt;
}

// The kernel writes no leading zeros, so a word is as wide as the kernel's and not as its text.
bool hasCapability(std::string_view bitmap, unsigned bit) {
  constexpr unsigned kWordBits = 8 * sizeof(unsigned long);
  for (unsigned word = bit / kWordBits; word > 0; --word) {
    const std::size_t space = bitmap.rfind(' ');
    if (space == std::string_view::npos)
      return false;
    bitmap = bitmap.substr(0, space);
  }
  const std::size_t space = bitmap.rfind(' ');
  const std::string_view word = space == std::string_view::npos ? bitmap : bitmap.substr(space + 1);
  unsigned long value = 0;
  const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value, 16);
  return error == std::errc() && end == word.data() + word.size() && (value >> bit % kWordBits & 1U) != 0;
}

}  // namespace veltrix
