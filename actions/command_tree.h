#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "platform/bundle.h"
#include "platform/property_list.h"

namespace veltrix {

// Gives the text of an English key in the user's language.
using Localize = std::function<std::string(std::string_view)>;

// The name of snippet `index` (0 to 9) as it is shown: a name that nobody has changed reads in the user's
// language. Nothing when the snippet has none.
std::optional<std::string> snippetName(const plist::Array& snippets, std::int32_t index,
                                       const Localize& localize);

// Where a command stands; titles are English keys, except a snippet's own name.
struct CommandPlace {
  std::int32_t categoryIndex = -1;
  std::int32_t commandIndex = -1;
  std::optional<std::string> categoryTitle;
  std::optional<std::string> commandTitle;
};

// Every action that a button can be given, in categories. Indices out of range read as nothing.
class CommandTree {
 public:
  // The bundle's resource "Assignments"; empty when it cannot be read. `systemVersion` as MacOSXVersion gives
  // it: some titles and commands belong to older or newer systems only.
  static CommandTree load(const Bundle& bundle, std::uint32_t systemVersion);

  // A copy of `categories`, adjusted to the system.
  CommandTree(const plist::Array& categories, std::uint32_t systemVersion);

  plist::Array categories() const { return fCategories; }
  std::int32_t categoryCount() const;
  std::int32_t commandCount(std::int32_t category) const;
  std::int32_t commandAt(std::int32_t category, std::int32_t row) const;  // 0 for none

  // As they are shown: localised, and snippets by their own names (`snippets` may be null).
  std::string categoryTitle(std::int32_t category, const Localize& localize) const;
  std::string commandTitle(std::int32_t category, std::int32_t row, const plist::Array& snippets,
                           const Localize& localize) const;

  // The first place of the command; nothing when it is not in the tree. With snippets (not null) a snippet's
  // own name is its title.
  std::optional<CommandPlace> find(std::int32_t command, const plist::Array& snippets,
                                   const Localize& localize) const;

 private:
  plist::Array fCategories;
};

}  // namespace veltrix
