#include "ctl/action_text.h"

#include <optional>

#include "actions/action_kind.h"
#include "ctl/command_catalogue.h"
#include "keyboard/key_names.h"
#include "settings/settings_keys.h"

namespace veltrix::ctl {
namespace {

using plist::Array;
using plist::Dictionary;

constexpr std::size_t kNameWidth = 11;

// Nothing for an empty value; further lines of a value stand below the first.
std::string line(std::string name, const std::string& value) {
  if (value.empty()) {
    return {};
  }
  name.resize(kNameWidth, ' ');
  for (const char c : value) {
    name += c == '\n' ? "\n" + std::string(kNameWidth, ' ') : std::string(1, c);
  }
  return name + "\n";
}

std::string nameOf(std::int32_t command, const Array& snippets) {
  const auto place = commandCatalogue().find(command, snippets, asItStands);
  return place ? place->commandTitle.value_or("") : "";
}

std::string keyText(const Dictionary& action) {
  const auto code = static_cast<std::uint16_t>(action.uint32For(keys::kKeyCode) & 0xFFU);
  if (code == kNoKeyCode) {
    return "none chosen";
  }
  GetKeyboardInformation(nullptr, kStringTable);  // without a layout the name says less, the code is there
  return GetKeyCombinationNameWithSepAndCase(code, action.uint16For(keys::kModifiers), "+", "+", true) +
         " (key " + std::to_string(code) + ")";
}

std::string snippetText(std::int32_t command, const Array& snippets) {
  const auto index = static_cast<std::size_t>(static_cast<std::uint16_t>(command) - kFirstSnippetCommand);
  return snippets.at(index).asDictionary().stringFor(keys::kSnippetText);
}

std::string parameterLines(const Dictionary& action, std::int32_t command, const Array& snippets) {
  const std::string text = action.stringFor(keys::kText);
  switch (actionKind(command)) {
    case ActionKind::kClick: {
      const auto modifiers = action.uint16For(keys::kModifiers);
      return line("with", modifiers == 0 ? "" : GetModifiersName(kNoKeyCode, modifiers));
    }
    case ActionKind::kKeystroke:
      return line("keys", keyText(action));
    case ActionKind::kScroll:
      return line("count", std::to_string(action.int32For(keys::kCount)));
    case ActionKind::kSnippet:
      return line("text", snippetText(command, snippets));
    case ActionKind::kApplication:
      return line("name", text) + line("identifier", action.stringFor(keys::kBundleId));
    case ActionKind::kItem:
      return line("path", text);
    case ActionKind::kUrl:
      return line("url", text);
    case ActionKind::kScript:
      return line("script", text);
    case ActionKind::kPlain:
      break;
  }
  return {};
}

}  // namespace

std::string actionText(const Dictionary& action, const Array& snippets) {
  const std::int32_t command = action.int32For(keys::kCommand);
  const std::string name = nameOf(command, snippets);
  return line("command", std::to_string(command) + (name.empty() ? "" : " (" + name + ")")) +
         parameterLines(action, command, snippets) + line("label", action.stringFor(keys::kLabel));
}

Json actionJson(const Dictionary& action, const Array& snippets) {
  const std::int32_t command = action.int32For(keys::kCommand);
  const std::string name = nameOf(command, snippets);
  return {{"command", command},
          {"name", name.empty() ? Json(nullptr) : Json(name)},
          {"kind", kindName(command)},
          {"action", jsonOf(action)}};
}

}  // namespace veltrix::ctl
