#include "pane/menu_choice.h"

#include <string>

#include "settings/button_key.h"
#include "settings/command_classes.h"
#include "settings/settings_keys.h"
#include "settings/settings_rules.h"

namespace veltrix {
namespace {

constexpr std::int32_t kFirstClickButton = 0;
constexpr std::int32_t kLastClickButton = 3;
constexpr std::int32_t kNoButton = -1;
constexpr std::int32_t kLastCodeWithModifiers = 18;  // of those that a menu item leaves with "mod"
constexpr std::int32_t kKeyCodeCommands[] = {10, 11};
constexpr std::int32_t kFirstScrollCommand = 20;
constexpr std::int32_t kLastScrollCommand = 23;

bool anyPlainClick(const plist::Dictionary& entry, std::int32_t first, std::int32_t excluded) {
  return VeltrixFindClickInSettings(entry, first, kLastClickButton, excluded) != kNoButton;
}

}  // namespace

MenuChoice menuChoice(const plist::Dictionary& entry, std::int32_t button) {
  MenuChoice choice;
  choice.action = entry.dictionaryFor(keys::kButtons).dictionaryFor(buttonKey(button));
  choice.command = choice.action.int32For(keys::kCommand);
  if (button == 0 && choice.command != kPrimaryClickCommand && !anyPlainClick(entry, 1, kNoButton)) {
    choice.action.set(keys::kCommand, kPrimaryClickCommand);
    choice.command = kPrimaryClickCommand;
  }
  choice.enabled = choice.command != kPrimaryClickCommand || anyPlainClick(entry, kFirstClickButton, button);
  choice.ownItemShows = choice.command >= 0 && choice.action.uint16For(keys::kModifiers) == 0 &&
                        choice.action.stringFor(keys::kLabel).empty();
  return choice;
}

void takeMenuChoice(plist::Dictionary action, std::int32_t tag) {
  if (tag < 0 || !action) {
    return;
  }
  action.clear();
  action.set(keys::kCommand, tag);
  if (tag >= kPrimaryClickCommand && tag <= kLastCodeWithModifiers) {
    action.set(keys::kModifiers, 0);
  }
  for (const std::int32_t command : kKeyCodeCommands) {
    if (tag == command) {
      action.set(keys::kKeyCode, kNoKeyCode);
    }
  }
  if (tag >= kFirstScrollCommand && tag <= kLastScrollCommand) {
    action.set(keys::kCount, 1);
  }
}

}  // namespace veltrix
