#include "editor/action_values.h"

#include <cstdlib>

#include "actions/action_kind.h"
#include "keyboard/key_names.h"
#include "platform/user_paths.h"
#include "settings/command_classes.h"
#include "settings/settings_keys.h"

namespace veltrix {
namespace {

using plist::Dictionary;

constexpr std::uint32_t kKeyCodeBits = 0xFF;
constexpr const char* kNothingChosen = "-";

// The last four are relics of older documents; nothing reads or writes them any more.
constexpr const char* kParameterKeys[] = {
    keys::kModifiers, keys::kKeyCode, keys::kCount, keys::kText, "btn", "clk", "char", "freq"};

void keepText(Dictionary action, const char* key) {
  action.set(key, action.stringFor(key));
}

std::int64_t magnitude(std::int32_t number) {
  return std::llabs(std::int64_t{number});
}

std::uint32_t maskOf(const ModifierKeys& held, bool reset) {
  return reset ? 0U : maskFromModifierKeys(held);
}

bool isCommand(const Dictionary& action, std::uint16_t command) {
  return action && action.uint16For(keys::kCommand) == command;
}

}  // namespace

void takeAction(Dictionary action, std::int32_t command, const ActionControls& controls, bool reset) {
  if (reset) {
    for (const char* key : kParameterKeys) {
      action.remove(key);
    }
  }
  action.set(keys::kCommand, command);
  switch (actionKind(command)) {
    case ActionKind::kApplication:
      keepText(action, keys::kText);
      keepText(action, keys::kBundleId);
      break;
    case ActionKind::kItem:
    case ActionKind::kUrl:
    case ActionKind::kScript:
      keepText(action, keys::kText);
      break;
    case ActionKind::kClick:
      action.set(keys::kModifiers, maskOf(controls.clickKeys, reset));
      break;
    case ActionKind::kScroll:
      action.set(keys::kCount, reset ? 1 : magnitude(controls.scrollCount));
      break;
    case ActionKind::kKeystroke:
      action.set(keys::kKeyCode, reset ? kNoKeyCode : action.uint32For(keys::kKeyCode) & kKeyCodeBits);
      action.set(keys::kModifiers, maskOf(controls.keystrokeKeys, reset));
      break;
    case ActionKind::kSnippet:
    case ActionKind::kPlain:
      break;
  }
}

void storeLabel(Dictionary action, const std::string& label) {
  action.set(keys::kLabel, label.empty() ? plist::Value() : plist::Value(label));
}

void storeText(Dictionary action, const std::string& text) {
  action.set(keys::kText, text);
}

bool storeKeystroke(Dictionary action, std::uint8_t keyCode, std::uint16_t modifiers) {
  if (!isCommand(action, kKeystrokeCommand)) {
    return false;
  }
  action.set(keys::kModifiers, modifiers);
  action.set(keys::kKeyCode, keyCode);
  return true;
}

bool storeApplication(Dictionary action, const std::string& name, const std::string& identifier) {
  if (!isCommand(action, kLaunchApplicationCommand)) {
    return false;
  }
  action.set(keys::kText, name);
  action.set(keys::kBundleId, identifier);
  return true;
}

bool storeItem(Dictionary action, const std::string& path) {
  if (!isCommand(action, kOpenItemCommand)) {
    return false;
  }
  action.set(keys::kText, abbreviatedPath(path));
  return true;
}

std::string keystrokeText(const Dictionary& action) {
  const auto keyCode = static_cast<std::uint16_t>(action.uint32For(keys::kKeyCode) & kKeyCodeBits);
  if (keyCode == kNoKeyCode) {
    return {};
  }
  return GetKeyCombinationNameWithSepAndCase(keyCode, action.uint16For(keys::kModifiers), std::nullopt,
                                             std::nullopt, true);
}

std::string applicationText(const Dictionary& action) {
  for (const char* key : {keys::kText, keys::kBundleId}) {
    std::string text = action.stringFor(key);
    if (!text.empty()) {
      return text;
    }
  }
  return kNothingChosen;
}

std::string itemText(const Dictionary& action) {
  std::string path = action.stringFor(keys::kText);
  return path.empty() ? kNothingChosen : path;
}

ModifierKeys modifierKeysOf(const Dictionary& action) {
  return modifierKeysFromMask(action.uint32For(keys::kModifiers));
}

std::int64_t scrollCountOf(const Dictionary& action) {
  return magnitude(action.int32For(keys::kCount));
}

}  // namespace veltrix
