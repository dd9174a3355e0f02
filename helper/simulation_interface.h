#pragma once

#include "helper/simulated_device_source.h"
#include "helper/status_interface.h"

namespace veltrix {

inline constexpr const char* kSimulationInterface = "com.aldmoor.VeltrixHelper1.Simulation";

// Lets tests and demonstrations plug and unplug simulated trackballs over the bus.
class SimulationInterface {
 public:
  SimulationInterface(SimulatedDeviceSource& source, HelperCore& core) : fSource(source), fCore(core) {}
  SimulationInterface(const SimulationInterface&) = delete;
  SimulationInterface& operator=(const SimulationInterface&) = delete;

  // The connection must outlive the object.
  Status publish(sd_bus* bus);

  SimulatedDeviceSource& source() const { return fSource; }
  HelperCore& core() const { return fCore; }

 private:
  SimulatedDeviceSource& fSource;
  HelperCore& fCore;
  BusSlotHandle fSlot;
};

}  // namespace veltrix
