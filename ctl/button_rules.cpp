#include "ctl/button_rules.h"

#include <algorithm>
#include <initializer_list>
#include <set>
#include <string>

#include "ctl/device_selector.h"
#include "ctl/outcome.h"
#include "helperlink/device_buttons.h"
#include "helperlink/device_kinds.h"
#include "settings/button_key.h"
#include "settings/command_classes.h"
#include "settings/settings_keys.h"
#include "settings/settings_rules.h"

namespace veltrix::ctl {
namespace {

constexpr std::int32_t kLastClickButton = 3;
constexpr std::int32_t kWheel = 12;
constexpr std::uint16_t kNewestVersion = 0xFFFF;

// The buttons of the oldest and of the newest device that the entry applies to.
std::set<std::int32_t> buttonsOf(const plist::Dictionary& entry) {
  const auto product = entry.uint16For(keys::kProductId);
  const auto limit = entry.uint16For(keys::kVersionMax);
  const std::uint16_t newest = limit != 0 ? limit : kNewestVersion;
  std::set<std::int32_t> buttons;
  for (const std::uint16_t version : {entry.uint16For(keys::kVersionMin), newest}) {
    const auto numbers = buttonNumbers(static_cast<std::int32_t>(deviceTabFor(product, version)));
    buttons.insert(numbers.begin(), numbers.end());
  }
  return buttons;
}

bool isPlainClick(const plist::Dictionary& action) {
  return action.uint16For(keys::kCommand) == kPrimaryClickCommand && action.int32For(keys::kModifiers) == 0;
}

}  // namespace

Status checkButtonOfModel(const plist::Dictionary& entry, std::int32_t button) {
  const auto buttons = buttonsOf(entry);
  if (buttons.empty() || button == kWheel || buttons.count(button) != 0) {
    return Done{};
  }
  std::string list;
  for (const std::int32_t each : buttons) {
    list += std::to_string(each) + ", ";
  }
  return Error{kNotFound,
               entryTitle(entry) + " has no button " + std::to_string(button) + ": it has " + list +
                   "and 12 for the wheel or ring",
               {}};
}

Status checkNewAction(const plist::Dictionary& entry, std::int32_t button, const plist::Dictionary& action) {
  if (button == kWheel && action.uint16For(keys::kCommand) != kScrollCommand) {
    return Error{kNotFound, "the wheel always scrolls: say \"scroll up\", with --count for its speed", {}};
  }
  const auto present = entry.dictionaryFor(keys::kButtons).dictionaryFor(buttonKey(button));
  const bool takesClick = button <= kLastClickButton && isPlainClick(present) && !isPlainClick(action);
  if (takesClick && VeltrixFindClickInSettings(entry, 0, kLastClickButton, button) < 0) {
    return Error{kNotFound,
                 "button " + std::to_string(button) +
                     " is the last of buttons 0 to 3 with the plain primary click; give that to another "
                     "one first",
                 {}};
  }
  return Done{};
}

}  // namespace veltrix::ctl
