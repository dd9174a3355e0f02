#pragma once

#include <functional>
#include <memory>

#include "driverlink/packets.h"
#include "helper/status_interface.h"

struct sd_bus_track;

namespace veltrix {

inline constexpr const char* kMonitorInterface = "com.aldmoor.VeltrixHelper1.Monitor";

struct BusTrackReleaser {
  void operator()(sd_bus_track* track) const;
};

// Tells programs of the session which buttons are used, each that has asked for it as long as it lives.
class MonitorInterface {
 public:
  // Calls `wantedChanged` when the first asks and when the last has gone.
  explicit MonitorInterface(std::function<void(bool)> wantedChanged)
      : fWantedChanged(std::move(wantedChanged)) {}
  MonitorInterface(const MonitorInterface&) = delete;
  MonitorInterface& operator=(const MonitorInterface&) = delete;

  // The connection must outlive the object.
  Status publish(sd_bus* bus);

  void tell(const ButtonPacket& packet) const;

  // For the bus: the watchers have become more or fewer.
  void countWatchers();
  sd_bus_track* watchers() const { return fWatchers.get(); }

 private:
  std::function<void(bool)> fWantedChanged;
  sd_bus* fBus = nullptr;
  std::unique_ptr<sd_bus_track, BusTrackReleaser> fWatchers;
  BusSlotHandle fSlot;
  bool fWanted = false;
};

}  // namespace veltrix
