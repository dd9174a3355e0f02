#include "helper/desktop/compositor_inputs.h"

#include <limits>
#include <nlohmann/json.hpp>

namespace veltrix {
namespace {

using nlohmann::json;

Error unreadable() {
  return {0, "the compositor's word about inputs cannot be read", {}};
}

const json& member(const json& object, const char* key) {
  static const json kNothing;
  const auto found = object.find(key);
  return found == object.end() ? kNothing : *found;
}

std::optional<CompositorKeyboard> keyboardOf(const json& input) {
  const json& identifier = member(input, "identifier");
  const json& name = member(input, "name");
  const json& group = member(input, "xkb_active_layout_index");
  if (member(input, "type") != "keyboard" || !identifier.is_string() || !name.is_string() ||
      !group.is_number_unsigned() || group.get<std::uint64_t>() > std::numeric_limits<std::uint32_t>::max()) {
    return std::nullopt;
  }
  return CompositorKeyboard{identifier.get<std::string>(), name.get<std::string>(),
                            group.get<std::uint32_t>()};
}

}  // namespace

Result<std::vector<CompositorKeyboard>> compositorKeyboards(std::string_view body) {
  const json inputs = json::parse(body, nullptr, false);
  if (!inputs.is_array()) {
    return unreadable();
  }
  std::vector<CompositorKeyboard> keyboards;
  for (const json& input : inputs) {
    if (auto keyboard = keyboardOf(input)) {
      keyboards.push_back(std::move(*keyboard));
    }
  }
  return keyboards;
}

Result<CompositorInputChange> compositorInputChange(std::string_view body) {
  const json event = json::parse(body, nullptr, false);
  const json& change = member(event, "change");
  if (!change.is_string()) {
    return unreadable();
  }
  return CompositorInputChange{change.get<std::string>(), keyboardOf(member(event, "input"))};
}

bool compositorSubscribed(std::string_view body) {
  return member(json::parse(body, nullptr, false), "success") == true;
}

}  // namespace veltrix
