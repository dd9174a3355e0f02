#include "helperlink/device_kinds.h"

#include <algorithm>
#include <iterator>

namespace veltrix {

namespace {

constexpr std::uint16_t kSkifflineProductId = 0x2041;
constexpr std::uint16_t kSkifflineNewButtonsVersion = 0x0107;  // from here on its buttons lie differently
constexpr std::uint32_t kSkifflineOldButtonsTab = 4;

// In the order of kDeviceKinds.
constexpr std::uint32_t kTabs[kDeviceKindCount] = {2, 3, 5, 6, 7};

}  // namespace

const DeviceKind kDeviceKinds[kDeviceKindCount] = {
    {0x1020, "Crest Pointer™", 0},
    {kSkifflineProductId, "Skiffline™ Trackball", 1},
    {0x1022, "Cirra™ Lucent Trackball", 2},
    {0x2048, "Cirra™ Trackball with Dial Rim", 3},
    {0x8002, "Aldmoor Cirra™ Roaming Pocket Trackball", 4},
};

const DeviceKind* findDeviceKind(std::uint16_t productId) {
  const auto* kind = std::find_if(std::begin(kDeviceKinds), std::end(kDeviceKinds),
                                  [&](const DeviceKind& each) { return each.productId == productId; });
  return kind != std::end(kDeviceKinds) ? kind : nullptr;
}

std::uint32_t deviceTabFor(std::uint16_t productId, std::uint16_t productVersion) {
  const DeviceKind* kind = findDeviceKind(productId);
  if (kind == nullptr) {
    return kNoDeviceTab;
  }
  if (productId == kSkifflineProductId && productVersion < kSkifflineNewButtonsVersion) {
    return kSkifflineOldButtonsTab;
  }
  return kTabs[kind - kDeviceKinds];
}

}  // namespace veltrix
