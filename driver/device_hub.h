#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "driver/device_monitor.h"
#include "driver/driver_core.h"
#include "driver/key_press_watch.h"
#include "driver/keyboard_watch.h"

namespace veltrix {

// Brings what the monitor finds to those who look after it.
class DeviceHub final : public InputNodeListener {
 public:
  // All must outlive the hub.
  DeviceHub(PollLoop& loop, DriverCore& core, KeyboardWatch& keyboards, KeyPressWatch& keyPresses) noexcept
      : fLoop(loop), fCore(core), fKeyboards(keyboards), fKeyPresses(keyPresses) {}

  void nodeAdded(const std::string& id, const InputNode& node) noexcept override;
  void nodeRemoved(const std::string& id) noexcept override;

 private:
  PollLoop& fLoop;
  DriverCore& fCore;
  KeyboardWatch& fKeyboards;
  KeyPressWatch& fKeyPresses;
  std::map<std::string, std::uint32_t> fNumbers;  // of the trackballs, by id
};

}  // namespace veltrix
