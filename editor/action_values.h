#pragma once

#include <cstdint>
#include <string>

#include "platform/property_list.h"
#include "settings/modifier_keys.h"

// What the editor reads from an action and writes into it. A null action reads as empty and swallows writes.
namespace veltrix {

// What the controls of the parameter pages say.
struct ActionControls {
  ModifierKeys clickKeys = {};
  ModifierKeys keystrokeKeys = {};
  std::int32_t scrollCount = 1;  // the tag of the chosen speed; its sign does not count
};

// Stores the command together with its parameters. With `reset` the action first loses all of its parameters
// but the application's identifier, and the parameters of the command start afresh; the label always stays.
void takeAction(plist::Dictionary action, std::int32_t command, const ActionControls& controls, bool reset);

// An empty label is none.
void storeLabel(plist::Dictionary action, const std::string& label);

// The address or the script.
void storeText(plist::Dictionary action, const std::string& text);

// These three do nothing and answer false when the action has become one of another kind. A path in the home
// folder is abbreviated.
bool storeKeystroke(plist::Dictionary action, std::uint8_t keyCode, std::uint16_t modifiers);
bool storeApplication(plist::Dictionary action, const std::string& name, const std::string& identifier);
bool storeItem(plist::Dictionary action, const std::string& path);

// How the parameters are shown. A keystroke without a key is empty; an application or item that has not been
// chosen is "-".
std::string keystrokeText(const plist::Dictionary& action);
std::string applicationText(const plist::Dictionary& action);
std::string itemText(const plist::Dictionary& action);
ModifierKeys modifierKeysOf(const plist::Dictionary& action);
std::int64_t scrollCountOf(const plist::Dictionary& action);  // not negative

}  // namespace veltrix
