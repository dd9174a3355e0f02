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

const std::string& CommandTitles::of(std::uint16_t command) {
  const auto [place, isNew] = fTitles.try_emplace(command);
  if (isNew) {
    const auto found = fTree.find(command, {}, asItStands);
    place->second = found ? found->commandTitle.value_or("") : "";
  }
  if (place->second.empty()) {
    place->second = command == 0 ? "nothing" : "command " + std::to_string(command);
  }
  return place->second;
}

}  // namespace veltrix::ctl
