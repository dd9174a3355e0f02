#pragma once

#include <cstddef>
#include <cstdint>

namespace veltrix {

inline constexpr std::uint16_t kFamilyVendorId = 0xA1D0;

// What the pane knows of one kind of trackball.
struct DeviceKind {
  std::uint16_t productId;
  const char* name;    // UTF-8, shown as it stands in every language
  int selectorColumn;  // 0 to 4, the column of the device-kind selector; -1 for none
};

inline constexpr std::size_t kDeviceKindCount = 5;
inline constexpr std::uint32_t kNoDeviceTab = 1;

extern const DeviceKind kDeviceKinds[kDeviceKindCount];  // in the order of their columns

// The kind of that product id, or null.
const DeviceKind* findDeviceKind(std::uint16_t productId);

// The page of the buttons tab view for a device, 2 to 7; kNoDeviceTab for a product of no known kind. The
// version is the device list's productVers.
std::uint32_t deviceTabFor(std::uint16_t productId, std::uint16_t productVersion);

}  // namespace veltrix
