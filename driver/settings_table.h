#pragma once

#include <array>
#include <cstddef>
#include <optional>

#include "driverlink/packets.h"

namespace veltrix {

// How the trackballs of an address are to work.
struct TrackballSettings {
  DriverRecord record;
  ScrollParameters scroll;

  friend bool operator==(const TrackballSettings& a, const TrackballSettings& b) noexcept;
};

// What the helper has told of trackballs, present or not. Has room for kMost addresses; the one that was
// told longest ago makes room for a new one.
class SettingsTable {
 public:
  static constexpr std::size_t kMost = 32;

  // Returns the address that had to make room.
  std::optional<DeviceAddress> put(const DeviceAddress& device, const TrackballSettings& settings) noexcept;
  void remove(const DeviceAddress& device) noexcept;
  void clear() noexcept { fCount = 0; }
  // Null when nothing was told; valid until the next change.
  const TrackballSettings* find(const DeviceAddress& device) const noexcept;

 private:
  struct Entry {
    DeviceAddress device;
    TrackballSettings settings;
  };

  std::array<Entry, kMost> fEntry;  // the oldest first
  std::size_t fCount = 0;
};

}  // namespace veltrix
