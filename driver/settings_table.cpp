#include "driver/settings_table.h"

#include <algorithm>
#include <cstring>

namespace veltrix {

bool operator==(const TrackballSettings& a, const TrackballSettings& b) noexcept {
  // The record is packed and consists of integers only.
  return std::memcmp(&a.record, &b.record, sizeof a.record) == 0 && a.scroll == b.scroll;
}

std::optional<DeviceAddress> SettingsTable::put(const DeviceAddress& device,
                                                const TrackballSettings& settings) noexcept {
  std::optional<DeviceAddress> replaced;
  remove(device);
  if (fCount == kMost) {
    replaced = fEntry.front().device;
    remove(*replaced);
  }
  fEntry[fCount++] = {device, settings};
  return replaced;
}

void SettingsTable::remove(const DeviceAddress& device) noexcept {
  const auto isOfDevice = [&](const Entry& entry) { return entry.device == device; };
  const auto end = fEntry.begin() + static_cast<std::ptrdiff_t>(fCount);
  fCount = static_cast<std::size_t>(std::remove_if(fEntry.begin(), end, isOfDevice) - fEntry.begin());
}

const TrackballSettings* SettingsTable::find(const DeviceAddress& device) const noexcept {
  for (std::size_t i = 0; i < fCount; ++i) {
    if (fEntry[i].device == device)
      return &fEntry[i].settings;
  }
  return nullptr;
}

}  // namespace veltrix
