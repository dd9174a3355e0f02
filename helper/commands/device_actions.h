#pragma once

#include "helper/commands/command_runner.h"
#include "helper/helper_core.h"

namespace veltrix {

// The actions of the trackballs that are connected, from the entries by which their records were made.
class DeviceActions final : public CommandSettings {
 public:
  // The core must outlive it.
  explicit DeviceActions(const HelperCore& core) : fCore(core) {}

  // Command 0 for a trackball that is not connected or has no record, and for a button without an action.
  CommandAction actionOf(const DeviceAddress& device, std::uint16_t slot) const override;
  std::string snippet(std::uint8_t number) const override;

 private:
  const HelperCore& fCore;
};

}  // namespace veltrix
