#include "helper/desktop/printed_shortcut.h"

#include <xkbcommon/xkbcommon.h>

#include <algorithm>
#include <array>
#include <string>
#include <utility>

#include "helper/desktop/printed_setting.h"

namespace veltrix {
namespace {

constexpr std::array<std::pair<std::string_view, std::uint8_t>, 7> kModifiers = {{{"Shift", kHoldShift},
                                                                                  {"Control", kHoldControl},
                                                                                  {"Ctrl", kHoldControl},
                                                                                  {"Primary", kHoldControl},
                                                                                  {"Alt", kHoldAlt},
                                                                                  {"Mod1", kHoldAlt},
                                                                                  {"Super", kHoldSuper}}};

// Nothing for a key or a modifier that is none of a keyboard's ("Above_Tab", "<Hyper>"), or for no key at
// all.
std::optional<KeyStroke> strokeOf(std::string_view keys) {
  KeyStroke stroke;
  while (keys.starts_with('<')) {
    const std::size_t end = keys.find('>');
    const std::string_view name = keys.substr(1, end - 1);
    const auto* const known = std::find_if(kModifiers.begin(), kModifiers.end(),
                                           [&](const auto& modifier) { return modifier.first == name; });
    if (end == std::string_view::npos || known == kModifiers.end()) {
      return {};
    }
    stroke.modifiers |= known->second;
    keys.remove_prefix(end + 1);
  }
  stroke.keysym =
      xkb_keysym_to_lower(xkb_keysym_from_name(std::string(keys).c_str(), XKB_KEYSYM_CASE_INSENSITIVE));
  return stroke.keysym != XKB_KEY_NoSymbol ? std::optional(stroke) : std::nullopt;
}

}  // namespace

std::optional<KeyStroke> shortcutIn(std::string_view printed) {
  PrintedSetting setting(printed);
  if (!setting.take("[")) {
    return {};
  }
  do {
    const auto keys = setting.takeText();
    if (!keys) {
      return {};
    }
    if (const auto stroke = strokeOf(*keys)) {
      return stroke;
    }
  } while (setting.take(","));
  return {};
}

}  // namespace veltrix
