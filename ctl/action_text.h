#pragma once

#include <string>

#include "ctl/plist_json.h"

// An action as the terminal shows it. Snippets give commands their names and may be null.
namespace veltrix::ctl {

// A line for the command and one for each of its parameters.
std::string actionText(const plist::Dictionary& action, const plist::Array& snippets);

// Command, its name and kind, and the action as it is stored.
Json actionJson(const plist::Dictionary& action, const plist::Array& snippets);

}  // namespace veltrix::ctl
