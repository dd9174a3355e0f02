#pragma once

#include <cstdint>
#include <map>
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

// Titles by command. A snippet is called by its place, not by a name that might tell what it types.
class CommandTitles {
 public:
  // Never empty: a command that the catalogue does not have is called by its number.
  const std::string& of(std::uint16_t command);

 private:
  CommandTree fTree = commandCatalogue();
  std::map<std::uint16_t, std::string> fTitles;
};

}  // namespace veltrix::ctl
