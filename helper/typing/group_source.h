#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "helper/commands/command_table.h"
#include "platform/event_loop.h"

struct sd_bus;

namespace veltrix {

// Knows which group of a Wayland compositor's keymap is on. The compositor tells it by the protocol only to
// the window that has the focus; some tell it elsewhere too.
class GroupSource {
 public:
  GroupSource() = default;
  GroupSource(const GroupSource&) = delete;
  GroupSource& operator=(const GroupSource&) = delete;
  virtual ~GroupSource() = default;

  // The group of the moment, from 0, as far as it was told; nothing while nobody has. Never waits.
  virtual std::optional<std::uint32_t> group() = 0;
};

// Asks sway when the path of its socket is not empty; under GNOME its settings; else the keyboard service of
// Plasma, which other desktops do not have. The loop and the connection, attached to it, must outlive the
// object.
std::unique_ptr<GroupSource> makeGroupSource(sd_event* loop, sd_bus* session, const std::string& swaySocket,
                                             const SessionKind& kind);

}  // namespace veltrix
