#pragma once

#include <cstdint>
#include <vector>

#include "tests/ui/model/document.h"

namespace veltrix::model {

struct Device {
  std::uint16_t product;
  std::uint16_t version;
};

inline constexpr int kNoDevice = 1;      // the device tab without a trackball
inline constexpr int kWithoutWheel = 5;  // the device tab of the model that cannot scroll

// The kinds in the order of the device strip.
inline constexpr std::uint16_t kKinds[] = {0x1020, 0x2041, 0x1022, 0x2048, 0x8002};

struct Found {
  int entry = 0;
  int deviceTab = kNoDevice;
};

// The entry for the connected trackballs; `preferred` (0 for none) counts when there are two or more.
Found findEntry(const Json& entries, const std::vector<Device>& connected, std::uint16_t preferred);

// The buttons of a device tab in the order in which the pane shows them.
std::vector<int> buttonsOf(int deviceTab);

}  // namespace veltrix::model
