#include "ctl/command_catalogue.h"

#include <array>
#include <cstddef>

#include "actions/action_kind.h"
#include "helperlink/system_version.h"
#include "platform/bundle.h"

namespace veltrix::ctl {
namespace {

// In the order of ActionKind.
constexpr std::array<const char*, kActionKindCount> kKindNames = {
    "plain", "click", "keystroke", "snippet", "scroll", "application", "item", "url", "script"};

}  // namespace

CommandTree commandCatalogue() {
  return CommandTree::load(Bundle::standard(), MacOSXVersion());
}

const char* kindName(std::int32_t command) {
  return kKindNames.at(static_cast<std::size_t>(actionKind(command)));
}

std::string asItStands(std::string_view key) {
  return std::string(key);
}

}  // namespace veltrix::ctl
