#include "driver/device_hub.h"

#include <cstdio>
#include <memory>

#include "driver/trackball_device.h"

namespace veltrix {

void DeviceHub::nodeAdded(const std::string& id, const InputNode& node) noexcept {
  if (node.kind == InputNode::Kind::kKeyboard) {
    fKeyPresses.add(id, node.path);
    return fKeyboards.add(id, node.path);
  }
  const DeviceAddress& address = node.address;
  const std::uint32_t number = fCore.attach(std::make_unique<TrackballDevice>(fLoop, address, node.path));
  fNumbers[id] = number;
  std::fprintf(stderr, "trackball %u: %04x:%04x version %04x at %s\n", number, address.vendor,
               address.product, address.productVersion, node.path.c_str());
}

void DeviceHub::nodeRemoved(const std::string& id) noexcept {
  fKeyboards.remove(id);
  fKeyPresses.remove(id);
  const auto trackball = fNumbers.find(id);
  if (trackball == fNumbers.end())
    return;
  fCore.detach(trackball->second);
  std::fprintf(stderr, "trackball %u: unplugged\n", trackball->second);
  fNumbers.erase(trackball);
}

}  // namespace veltrix
