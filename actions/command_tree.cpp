#include "actions/command_tree.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "platform/property_list_io.h"
#include "settings/command_classes.h"
#include "settings/deep_copy.h"
#include "settings/settings_keys.h"

namespace veltrix {

namespace {

using plist::Array;
using plist::Dictionary;

constexpr std::uint32_t kNewerSystem = 0x1070;  // the first release that counts as newer
constexpr std::int32_t kNewerSystemsOnly = 107;
constexpr std::int32_t kOlderSystemsOnly = 136;

constexpr const char* kCategory = "category";
constexpr const char* kCategoryOnOlder = "category106";
constexpr const char* kCommands = "commands";
constexpr const char* kCode = "command";
constexpr const char* kName = "name";
constexpr const char* kNameOnOlder = "name106";

Dictionary dictionaryAt(const Array& array, std::int32_t index) {
  return index < 0 ? Dictionary() : array.at(static_cast<std::size_t>(index)).asDictionary();
}

std::int32_t countOf(const Array& array) {
  return static_cast<std::int32_t>(array.count());
}

std::optional<std::string> textOf(const Dictionary& dictionary, const char* key) {
  const auto* value = dictionary.find(key);
  const auto* text = value != nullptr ? value->stringIf() : nullptr;
  return text != nullptr ? std::optional(*text) : std::nullopt;
}

void takeOlderTitle(Dictionary dictionary, const char* key, const char* olderKey) {
  const std::string older = dictionary.stringFor(olderKey);
  if (!older.empty()) {
    dictionary.set(key, older);
  }
}

void adjustCategory(const Dictionary& category, bool isNewer) {
  const std::int32_t hidden = isNewer ? kOlderSystemsOnly : kNewerSystemsOnly;
  Array commands = category.arrayFor(kCommands);
  for (std::size_t row = commands.count(); row-- > 0;) {
    const Dictionary command = commands.at(row).asDictionary();
    if (!isNewer) {
      takeOlderTitle(command, kName, kNameOnOlder);
    }
    if (command && command.int32For(kCode) == hidden) {
      commands.remove(row);
    }
  }
}

void adjustToSystem(const Array& categories, std::uint32_t systemVersion) {
  const bool isNewer = systemVersion >= kNewerSystem;
  for (const auto& element : categories.items()) {
    const Dictionary category = element.asDictionary();
    if (!isNewer) {
      takeOlderTitle(category, kCategory, kCategoryOnOlder);
    }
    adjustCategory(category, isNewer);
  }
}

// The row of the first command of that code, -1 for none. What is no dictionary has no code, not even 0.
std::int32_t rowOf(std::int32_t code, const Array& commands) {
  const auto& rows = commands.items();
  const auto found = std::find_if(rows.begin(), rows.end(), [code](const plist::Value& row) {
    const Dictionary command = row.asDictionary();
    return command && command.int32For(kCode) == code;
  });
  return found == rows.end() ? -1 : static_cast<std::int32_t>(found - rows.begin());
}

// The title of a command: that of a snippet is its own name, if it has one.
std::optional<std::string> titleOf(const Dictionary& command, const Array& snippets,
                                   const Localize& localize) {
  const std::int32_t code = command.int32For(kCode);
  if (code >= kFirstSnippetCommand && code <= kLastSnippetCommand) {
    auto name = snippetName(snippets, code - kFirstSnippetCommand, localize);
    if (name && !name->empty()) {
      return name;
    }
  }
  return textOf(command, kName);
}

}  // namespace

std::optional<std::string> snippetName(const Array& snippets, std::int32_t index, const Localize& localize) {
  auto name = textOf(dictionaryAt(snippets, index), keys::kSnippetName);
  if (name) {
    const std::string number = std::to_string(std::int64_t{index} + 1);
    if (*name == "Text snippet " + number || *name == "Snippet " + number) {
      return localize("Snippet") + " " + number;
    }
  }
  return name;
}

CommandTree CommandTree::load(const Bundle& bundle, std::uint32_t systemVersion) {
  const auto document = plist::readFile(bundle.pathForResource("Assignments", "plist"));
  return CommandTree(document ? document.value().root.asArray() : Array(), systemVersion);
}

CommandTree::CommandTree(const Array& categories, std::uint32_t systemVersion)
    : fCategories(mutableDeepAutoreleasedCopy(categories)) {
  adjustToSystem(fCategories, systemVersion);
}

std::int32_t CommandTree::categoryCount() const {
  return countOf(fCategories);
}

std::int32_t CommandTree::commandCount(std::int32_t category) const {
  return countOf(dictionaryAt(fCategories, category).arrayFor(kCommands));
}

std::int32_t CommandTree::commandAt(std::int32_t category, std::int32_t row) const {
  return dictionaryAt(dictionaryAt(fCategories, category).arrayFor(kCommands), row).int32For(kCode);
}

std::string CommandTree::categoryTitle(std::int32_t category, const Localize& localize) const {
  return localize(dictionaryAt(fCategories, category).stringFor(kCategory));
}

std::string CommandTree::commandTitle(std::int32_t category, std::int32_t row, const Array& snippets,
                                      const Localize& localize) const {
  const Dictionary command = dictionaryAt(dictionaryAt(fCategories, category).arrayFor(kCommands), row);
  return localize(titleOf(command, snippets, localize).value_or(""));
}

std::optional<CommandPlace> CommandTree::find(std::int32_t command, const Array& snippets,
                                              const Localize& localize) const {
  for (std::int32_t index = 0; index < categoryCount(); ++index) {
    const Dictionary category = dictionaryAt(fCategories, index);
    const Array commands = category.arrayFor(kCommands);
    const std::int32_t row = rowOf(command, commands);
    if (row >= 0) {
      return CommandPlace{index, row, textOf(category, kCategory),
                          titleOf(dictionaryAt(commands, row), snippets, localize)};
    }
  }
  return std::nullopt;
}

}  // namespace veltrix
