#pragma once

#include <cstdint>

#include "platform/property_list.h"

// How a button's action and the choice in its menu become one another.
namespace veltrix {

// What the menu of a button has to show.
struct MenuChoice {
  plist::Dictionary action;   // of the button; null when it has none
  std::int32_t command = 0;   // counts instead of the action's own
  bool enabled = true;        // false for the last plain click, which must not be taken away
  bool ownItemShows = false;  // an item tagged with the command says all, if there is one
};

// Reads the action of a button of the device entry. Button 0 becomes the primary click in the entry when none
// of buttons 0 to 3 is one any more.
MenuChoice menuChoice(const plist::Dictionary& entry, std::int32_t button);

// Makes the action what the menu item `tag` stands for, with nothing left of what it was. An item that stands
// for no command (a negative tag) changes nothing; without an action nothing happens.
void takeMenuChoice(plist::Dictionary action, std::int32_t tag);

}  // namespace veltrix
