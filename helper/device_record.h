#pragma once

#include <cstdint>
#include <optional>

#include "driverlink/record.h"
#include "driverlink/scroll_parameters.h"
#include "helperlink/device_list.h"
#include "platform/property_list.h"

namespace veltrix {

// What the settings say for one trackball.
struct DeviceRecord {
  std::int32_t entryIndex = -1;        // the entry that was converted, -1 for none
  bool isGlobal = false;               // whether it is the one for every device, for want of a better
  std::optional<DriverRecord> record;  // nothing without an entry that can be converted
  ScrollParameters scroll{};           // of the same entry
  bool jumps = false;                  // whether the pointer is to go to the default button of a new dialog
};

bool operator==(const DeviceRecord& a, const DeviceRecord& b);

// Chooses the best entry for the trackball, else the global one, and converts it; the global entry serves the
// buttons that defer to it.
DeviceRecord makeDeviceRecord(const plist::Array& entries, const VeltrixDeviceEntry& device);

}  // namespace veltrix
