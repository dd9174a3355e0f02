#pragma once

#include <cstdint>

#include "helperlink/device_kinds.h"
#include "helperlink/device_list.h"
#include "platform/property_list.h"

namespace veltrix {

// The entry that the pane shows for the connected devices.
struct FoundEntry {
  bool found = false;
  std::int32_t index = 0;  // 0 when nothing was found
  std::uint32_t deviceTab = kNoDeviceTab;
};

// The first entry of `entries` that fits the first connected device that has one; entries for any product are
// not considered. `preferredProduct` (0 for none) restricts the choice to devices of that product when at
// least two devices are connected and one of them is of it. `connected` may be null.
FoundEntry findEntryForDevices(const plist::Array& entries, const VeltrixDeviceList* connected,
                               std::uint16_t preferredProduct);

// The first entry whose vendor, product and version bounds equal those of `entry` on their low 16 bits; null
// when there is none.
plist::Dictionary findEntryOfSameIds(const plist::Array& entries, const plist::Dictionary& entry);

}  // namespace veltrix
