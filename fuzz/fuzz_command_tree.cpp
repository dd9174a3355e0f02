#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "actions/action_kind.h"
#include "actions/assignment_title.h"
#include "actions/command_tree.h"
#include "platform/property_list_io.h"
#include "settings/settings_keys.h"

// A dictionary with whatever it holds for a command tree ("tree"), snippets and actions: every row is shown,
// every command searched, every action titled, and what a list shows is held against what a search finds.
namespace {

using veltrix::CommandTree;
using veltrix::plist::Array;
using veltrix::plist::Dictionary;

void require(bool holds) {
  if (!holds) {
    std::abort();
  }
}

std::string asItStands(std::string_view key) {
  return std::string(key);
}

void checkRow(const CommandTree& tree, std::int32_t category, std::int32_t row, const Array& snippets) {
  const std::int32_t command = tree.commandAt(category, row);
  tree.commandTitle(category, row, snippets, asItStands);
  const auto place = tree.find(command, snippets, asItStands);
  if (!place) {
    require(command == 0);  // a row that is no command reads as 0, and no search finds it
    return;
  }
  require(tree.commandAt(place->categoryIndex, place->commandIndex) == command);
  require(place->categoryIndex <= category || command == 0);
  require(tree.commandTitle(place->categoryIndex, place->commandIndex, snippets, asItStands) ==
          place->commandTitle.value_or(""));
}

void checkTree(const CommandTree& tree, const Array& snippets) {
  constexpr std::int32_t kMostRows = 50;  // each row costs a search of the whole tree
  for (std::int32_t category = 0; category < std::min(tree.categoryCount(), kMostRows); ++category) {
    tree.categoryTitle(category, asItStands);
    for (std::int32_t row = 0; row < std::min(tree.commandCount(category), kMostRows); ++row) {
      checkRow(tree, category, row, snippets);
    }
  }
}

void checkActions(const Array& actions, const CommandTree& tree, const Array& snippets) {
  for (const auto& element : actions.items()) {
    const Dictionary action = element.asDictionary();
    const std::int32_t command = action.int32For(veltrix::keys::kCommand);
    const auto kind = static_cast<std::int32_t>(veltrix::actionKind(command));
    require(kind >= 0 && kind < veltrix::kActionKindCount);
    require(!veltrix::assignmentTitle(action, command, tree, snippets, asItStands).empty());
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto file = veltrix::plist::read({reinterpret_cast<const char*>(data), size});
  const auto input = file ? file.value().root.asDictionary() : Dictionary();
  const auto snippets = input.arrayFor("snippets");
  for (const std::uint32_t version : {0x1060U, 0x1070U}) {
    const CommandTree tree(input.arrayFor("tree"), version);
    require(!tree.find(version < 0x1070U ? 107 : 136, snippets, asItStands));
    checkTree(tree, snippets);
    checkActions(input.arrayFor("actions"), tree, snippets);
  }
  return 0;
}
