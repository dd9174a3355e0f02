#pragma once

#include <systemd/sd-bus.h>

#include <chrono>
#include <string>

#include "helper/desktop/program_starter.h"
#include "helper/reconnect_delay.h"
#include "helper/typing/group_source.h"
#include "platform/session_bus.h"

namespace veltrix {

// The group as GNOME's settings tell it. They are read by gsettings when they change, of which the bus tells;
// a reading that fails is tried again when somebody wants the group.
class GnomeGroup final : public GroupSource {
 public:
  // Asks as soon as the bus tells of changes. gsettings counts as failed when it has not ended after `grace`.
  // The loop and the connection, attached to it, must outlive the object.
  GnomeGroup(sd_event* loop, sd_bus* bus, ProgramStarter::Output output = {},
             std::chrono::microseconds grace = std::chrono::seconds(5));

  std::optional<std::uint32_t> group() override;

  // For the bus: the settings have changed.
  void ask();

 private:
  void take(const Result<std::string>& listed);
  std::uint64_t now() const;

  ProgramStarter fStarter;
  std::chrono::microseconds fGrace;
  BusSlotHandle fChanges;
  std::optional<std::uint32_t> fGroup;
  bool fIsAsking = false;
  bool fHasChanged = false;  // meanwhile
  bool fHasFailed = false;   // to read
  ReconnectDelay fDelay;
  std::uint64_t fNextAttempt = 0;  // of the loop's monotonic clock, in microseconds
};

}  // namespace veltrix
