#include "tests/ui/model/devices.h"

#include <algorithm>
#include <cstddef>

namespace veltrix::model {
namespace {

int tabOf(const Device& device) {
  switch (device.product) {
    case 0x1020:
      return 2;
    case 0x2041:
      return device.version >= 0x0107 ? 3 : 4;
    case 0x2048:
      return 6;
    case 0x1022:
      return kWithoutWheel;
    case 0x8002:
      return 7;
    default:
      return kNoDevice;
  }
}

bool fits(const Json& entry, const Device& device) {
  const std::uint16_t product = lowBitsOf(entry, "device product id");
  const std::uint16_t least = lowBitsOf(entry, "device version min");
  const std::uint16_t most = lowBitsOf(entry, "device version max");
  return product != 0 && product == device.product && (least == 0 || device.version >= least) &&
         (most == 0 || device.version <= most);
}

}  // namespace

Found findEntry(const Json& entries, const std::vector<Device>& connected, std::uint16_t preferred) {
  const bool chooses = connected.size() > 1 && std::ranges::any_of(connected, [&](const Device& device) {
                         return device.product == preferred;
                       });
  for (const Device& device : connected) {
    for (std::size_t i = 0; i < entries.size(); ++i) {
      if ((!chooses || device.product == preferred) && fits(entries.at(i), device)) {
        return {static_cast<int>(i), tabOf(device)};
      }
    }
  }
  return {};
}

std::vector<int> buttonsOf(int deviceTab) {
  switch (deviceTab) {
    case kNoDevice:
      return {};
    case 2:
    case 3:
      return {0, 1, 2, 3, 8, 9};
    case 4:
      return {0, 1, 2, 3};
    default:
      return {0, 1, 8};
  }
}

}  // namespace veltrix::model
