#include "settings/action_check.h"

#include "settings/command_classes.h"
#include "settings/settings_keys.h"
#include "settings/settings_schema.h"

namespace veltrix {
namespace {

using plist::Dictionary;

bool isButtonKey(std::string_view key) {
  const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
  return key.size() == 2 && isDigit(key[0]) && isDigit(key[1]) && key <= "15";
}

void checkAction(std::string_view key, const Dictionary& action, const ProblemList& problems) {
  if (!action.contains(keys::kCommand)) {
    problems.add("has no \"cmd\"");
    return;
  }
  for (const char* text : {keys::kLabel, keys::kText, keys::kBundleId}) {
    problems.checkType(action, text);
  }
  problems.checkRange(action, keys::kCommand, 0, 0xFFFF);
  problems.checkRange(action, keys::kKeyCode, 0, kNoKeyCode);
  problems.checkRange(action, keys::kCount, 0, 0x7FFF);
  problems.checkModifiers(action, keys::kModifiers);
  const std::uint16_t command = action.uint16For(keys::kCommand);
  if (key == keys::kWheelButton && command != kScrollCommand) {
    problems.at(keys::kCommand).add("the wheel always carries command 20");
  }
}

}  // namespace

void checkButtons(const Dictionary& buttons, const ProblemList& problems) {
  for (const auto& key : buttons.keys()) {
    const ProblemList here = problems.at(key);
    if (!isButtonKey(key)) {
      here.add("is no button: keys are two digits, 00 to 15");
    } else if (const auto action = buttons.dictionaryFor(key)) {
      checkAction(key, action, here);
    } else {
      here.add(std::string("is ") + typeName(buttons.get(key).type()) + " instead of a dictionary");
    }
  }
}

}  // namespace veltrix
