#pragma once

#include <cstdint>
#include <string>

#include "actions/command_tree.h"
#include "platform/property_list.h"

namespace veltrix {

// How an action reads in a menu that has no item of its own for it: its label, else what it does. Never
// empty. `command` counts instead of the action's own. The names of keys come from keyboard/key_names.h.
std::string assignmentTitle(const plist::Dictionary& action, std::int32_t command, const CommandTree& tree,
                            const plist::Array& snippets, const Localize& localize);

}  // namespace veltrix
