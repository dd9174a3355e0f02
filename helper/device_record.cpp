#include "helper/device_record.h"

#include <cstring>

#include "settings/driver_record.h"
#include "settings/scroll_parameters.h"
#include "settings/settings_keys.h"
#include "settings/settings_rules.h"

namespace veltrix {

bool operator==(const DeviceRecord& a, const DeviceRecord& b) {
  if (a.entryIndex != b.entryIndex || a.isGlobal != b.isGlobal ||
      a.record.has_value() != b.record.has_value() || a.scroll != b.scroll || a.jumps != b.jumps) {
    return false;
  }
  return !a.record || std::memcmp(&*a.record, &*b.record, sizeof *a.record) == 0;
}

DeviceRecord makeDeviceRecord(const plist::Array& entries, const VeltrixDeviceEntry& device) {
  std::int32_t best = -1;
  std::int32_t global = -1;
  VeltrixMatchAppPrefs(entries, nullptr, nullptr, device.vendorID, device.productID, device.productVers,
                       &best, &global);
  // An index of -1 is out of range and gives a null dictionary, which the conversion takes as missing.
  const auto entryAt = [&](std::int32_t index) {
    return entries.at(static_cast<std::size_t>(index)).asDictionary();
  };
  DeviceRecord result;
  result.isGlobal = best < 0 && global >= 0;
  result.entryIndex = best >= 0 ? best : global;
  DriverRecord record{};
  if (VeltrixAppPrefsDictToStruct(entryAt(best), entryAt(global), &record))
    result.record = record;
  result.scroll = scrollParametersOf(entryAt(result.entryIndex));
  result.jumps =
      result.record && entryAt(result.entryIndex).dictionaryFor(keys::kOptions).boolFor(keys::kJump);
  return result;
}

}  // namespace veltrix
