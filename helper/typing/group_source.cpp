#include "helper/typing/group_source.h"

#include "helper/typing/plasma_group.h"
#include "helper/typing/sway_group.h"

namespace veltrix {

std::unique_ptr<GroupSource> makeGroupSource(sd_event* loop, sd_bus* session, const std::string& swaySocket) {
  if (!swaySocket.empty()) {
    return std::make_unique<SwayGroup>(loop, swaySocket);
  }
  return std::make_unique<PlasmaGroup>(session);
}

}  // namespace veltrix
