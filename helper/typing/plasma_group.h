#pragma once

#include <systemd/sd-bus.h>

#include "helper/typing/group_source.h"
#include "platform/session_bus.h"

namespace veltrix {

// The group as Plasma's compositor tells it on the session bus. Only asks: the service is not started by it.
class PlasmaGroup final : public GroupSource {
 public:
  // The connection must be attached to a loop and outlive the object.
  explicit PlasmaGroup(sd_bus* bus);

  std::optional<std::uint32_t> group() override { return fGroup; }

  // For the bus: the service has come or gone; it has told the group, or that there is none.
  void ask();
  void take(std::optional<std::uint32_t> group) { fGroup = group; }

 private:
  sd_bus* fBus;
  std::optional<std::uint32_t> fGroup;
  BusSlotHandle fChanges;
  BusSlotHandle fOwner;
  BusSlotHandle fQuestion;
};

}  // namespace veltrix
