#pragma once

#include <initializer_list>

#include "platform/property_list.h"

namespace veltrix::testing {

struct TreeCommand {
  int code;
  const char* name;
};

struct TreeCategory {
  const char* title;
  std::initializer_list<TreeCommand> commands;
};

// The contents of a command tree resource.
inline plist::Array makeCommandTree(std::initializer_list<TreeCategory> categories) {
  plist::Array tree = plist::Array::create();
  for (const TreeCategory& category : categories) {
    plist::Array commands = plist::Array::create();
    for (const TreeCommand& one : category.commands) {
      plist::Dictionary command = plist::Dictionary::create();
      command.set("command", one.code);
      command.set("name", one.name);
      commands.append(command);
    }
    plist::Dictionary entry = plist::Dictionary::create();
    entry.set("category", category.title);
    entry.set("commands", commands);
    tree.append(entry);
  }
  return tree;
}

// One command of every kind, and a category without commands.
inline plist::Array makeTreeOfAllKinds() {
  return makeCommandTree({{"Clicks", {{1, "Click"}, {2, "Right Click"}, {12, "Hold"}}},
                          {"Keys", {{10, "Type"}, {11, "Undo"}}},
                          {"Scrolling", {{20, "Scroll Up"}, {23, "Scroll Right"}}},
                          {"Open", {{71, "Application"}, {70, "Item"}, {72, "Address"}, {73, "Script"}}},
                          {"Texts", {{180, "Text 1"}, {182, "Text 3"}, {189, "Text 10"}}},
                          {"Nothing", {}},
                          {"Again", {{1, "Click Again"}, {0, "No Action"}}}});
}

}  // namespace veltrix::testing
