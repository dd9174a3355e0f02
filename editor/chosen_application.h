#pragma once

#include <string>

#include "platform/application_search.h"
#include "platform/installed_applications.h"

namespace veltrix {

// An application as an action keeps it.
struct ChosenApplication {
  std::string name;        // without a final ".app"
  std::string identifier;  // empty when the application has none

  friend bool operator==(const ChosenApplication&, const ChosenApplication&) = default;
};

// Of an application of this desktop.
ChosenApplication chosenApplication(const InstalledApplication& application);

// What a path stands for, which need not exist:
// - an application folder: its Contents/Info.plist names it and its identifier; what is missing there is the
//   last component of the path, and no identifier;
// - a desktop entry (*.desktop): its name and its identifier, or its path when no identifier leads to it;
// - a program, that is any other file that can be executed: the last component, and the path as identifier;
// - anything else: the last component, without an identifier.
ChosenApplication chosenApplication(const std::string& path, const ApplicationSearch& search);

}  // namespace veltrix
