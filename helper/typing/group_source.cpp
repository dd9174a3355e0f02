#include "helper/typing/group_source.h"

#include "helper/typing/gnome_group.h"
#include "helper/typing/plasma_group.h"
#include "helper/typing/sway_group.h"

namespace veltrix {

std::unique_ptr<GroupSource> makeGroupSource(sd_event* loop, sd_bus* session, const std::string& swaySocket,
                                             const SessionKind& kind) {
  if (!swaySocket.empty()) {
    return std::make_unique<SwayGroup>(loop, swaySocket);
  }
  // Under X11 the server itself tells, so that nobody need ask.
  if (kind.desktop == kOnGnome && kind.display == DisplayKind::kWayland) {
    return std::make_unique<GnomeGroup>(loop, session);
  }
  return std::make_unique<PlasmaGroup>(session);
}

}  // namespace veltrix
