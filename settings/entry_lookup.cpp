#include "settings/entry_lookup.h"

#include <algorithm>
#include <array>
#include <span>

#include "settings/settings_keys.h"

namespace veltrix {
namespace {

bool entryFits(const plist::Dictionary& entry, const VeltrixDeviceEntry& device) {
  const std::uint16_t product = entry.uint16For(keys::kProductId);
  if (product == 0 || product != device.productID) {
    return false;
  }
  const std::uint16_t versionMin = entry.uint16For(keys::kVersionMin);
  const std::uint16_t versionMax = entry.uint16For(keys::kVersionMax);
  return (versionMin == 0 || versionMin <= device.productVers) &&
         (versionMax == 0 || versionMax >= device.productVers);
}

}  // namespace

FoundEntry findEntryForDevices(const plist::Array& entries, const VeltrixDeviceList* connected,
                               std::uint16_t preferredProduct) {
  if (connected == nullptr) {
    return {};
  }
  const std::span devices(connected->device, VeltrixDeviceCount(*connected));
  const auto isPreferred = [=](const VeltrixDeviceEntry& device) {
    return device.productID == preferredProduct;
  };
  const bool onlyPreferred = preferredProduct != 0 && devices.size() >= 2 &&
                             std::any_of(devices.begin(), devices.end(), isPreferred);
  for (const auto& device : devices) {
    if (onlyPreferred && !isPreferred(device)) {
      continue;
    }
    std::int32_t index = 0;
    for (const auto& element : entries.items()) {
      if (entryFits(element.asDictionary(), device)) {
        return {true, index, deviceTabFor(device.productID, device.productVers)};
      }
      ++index;
    }
  }
  return {};
}

plist::Dictionary findEntryOfSameIds(const plist::Array& entries, const plist::Dictionary& entry) {
  constexpr std::array kIds = {keys::kVendorId, keys::kProductId, keys::kVersionMin, keys::kVersionMax};
  for (const auto& element : entries.items()) {
    auto candidate = element.asDictionary();
    const bool same = std::all_of(kIds.begin(), kIds.end(), [&](const char* key) {
      return candidate.uint16For(key) == entry.uint16For(key);
    });
    if (candidate && same) {
      return candidate;
    }
  }
  return {};
}

}  // namespace veltrix
