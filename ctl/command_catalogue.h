#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "actions/command_tree.h"

namespace veltrix::ctl {

// The commands that this system offers.
CommandTree commandCatalogue();

// A command's kind in one word: "click", "keystroke", "plain" and so on.
const char* kindName(std::int32_t command);

// Titles are shown in English, like everything that the program says.
std::string asItStands(std::string_view key);

}  // namespace veltrix::ctl
