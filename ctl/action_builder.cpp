#include "ctl/action_builder.h"

#include <filesystem>
#include <iterator>
#include <utility>

#include "actions/action_kind.h"
#include "ctl/command_catalogue.h"
#include "ctl/key_words.h"
#include "ctl/outcome.h"
#include "platform/user_paths.h"
#include "settings/settings_keys.h"

namespace veltrix::ctl {
namespace {

using plist::Dictionary;

struct CommandWord {
  const char* word;
  std::int32_t command;
};

constexpr CommandWord kClicks[] = {
    {"left", 1},     {"right", 2},    {"middle", 3},    {"back", 4},      {"forward", 5},
    {"double", 6},   {"drag", 7},     {"triple", 8},    {"button6", 12},  {"button7", 13},
    {"button8", 14}, {"button9", 15}, {"button10", 16}, {"button11", 17}, {"button12", 18},
};
constexpr CommandWord kDirections[] = {{"up", 20}, {"down", 21}, {"left", 22}, {"right", 23}};

constexpr std::int32_t kSnippetCount = 10;
constexpr std::int32_t kLargestCount = 0x7FFF;
constexpr std::string_view kApplicationSuffix = ".app";

Error refuse(int code, const std::string& message) {
  return {code, message, {}};
}

Dictionary actionFor(std::int32_t command) {
  auto action = Dictionary::create();
  action.set(keys::kCommand, command);
  return action;
}

NewAction actionWithText(std::int32_t command, const std::string& text) {
  if (text.empty()) {
    return refuse(kBadInput, "the text must not be empty");
  }
  auto action = actionFor(command);
  action.set(keys::kText, text);
  return action;
}

template <std::size_t Count>
NewAction actionForWord(const CommandWord (&words)[Count], const std::string& wanted) {
  std::string list;
  for (const auto& [word, command] : words) {
    if (wanted == word) {
      return actionFor(command);
    }
    list += (list.empty() ? "" : ", ") + std::string(word);
  }
  return refuse(kBadInput, "\"" + wanted + "\" is none of " + list);
}

NewAction keystroke(const KeyCombination& keys) {
  auto action = actionFor(kKeystrokeCommand);
  action.set(keys::kKeyCode, keys.keyCode);
  action.set(keys::kModifiers, keys.modifiers);
  return action;
}

}  // namespace

NewAction clickAction(const std::string& kind, const std::string& modifiers) {
  auto action = actionForWord(kClicks, kind);
  const auto mask = parseModifiers(modifiers);
  if (!mask) {
    return mask.error();
  }
  if (action) {
    action.value().set(keys::kModifiers, mask.value());
  }
  return action;
}

NewAction keystrokeAction(const std::string& keys) {
  const auto parsed = parseKeystroke(keys);
  return parsed ? keystroke(parsed.value()) : NewAction(parsed.error());
}

NewAction keyCodeAction(const std::string& keyCode, const std::string& modifiers) {
  const auto code = parseKeyCode(keyCode);
  const auto mask = parseModifiers(modifiers);
  if (!code || !mask) {
    return code ? mask.error() : code.error();
  }
  return keystroke({code.value(), mask.value()});
}

NewAction scrollAction(const std::string& direction, std::int32_t count) {
  if (count < 1 || count > kLargestCount) {
    return refuse(kBadInput, "the count must be 1 to " + std::to_string(kLargestCount));
  }
  auto action = actionForWord(kDirections, direction);
  if (action) {
    action.value().set(keys::kCount, count);
  }
  return action;
}

NewAction openAction(const std::string& path) {
  if (path.empty() || path == "~" || path.starts_with("~/")) {
    return actionWithText(kOpenItemCommand, path);
  }
  std::error_code problem;
  const auto absolute = std::filesystem::absolute(path, problem);
  if (problem) {
    return refuse(kNotFound, path + ": " + problem.message());
  }
  return actionWithText(kOpenItemCommand, abbreviatedPath(absolute.lexically_normal().string()));
}

NewAction launchAction(const std::string& name, const std::string& identifier) {
  const bool hasSuffix = name.size() > kApplicationSuffix.size() && name.ends_with(kApplicationSuffix);
  auto action = actionWithText(kLaunchApplicationCommand,
                               hasSuffix ? name.substr(0, name.size() - kApplicationSuffix.size()) : name);
  if (action) {
    action.value().set(keys::kBundleId, identifier);
  }
  return action;
}

NewAction urlAction(const std::string& url) {
  return actionWithText(kOpenUrlCommand, url);
}

NewAction scriptAction(const std::string& text) {
  return actionWithText(kRunScriptCommand, text);
}

NewAction snippetAction(std::int32_t number) {
  if (number < 1 || number > kSnippetCount) {
    return refuse(kBadInput, "snippets are numbered from 1 to " + std::to_string(kSnippetCount));
  }
  return actionFor(kFirstSnippetCommand + number - 1);
}

NewAction plainAction(std::int32_t command) {
  if (!commandCatalogue().find(command, {}, asItStands)) {
    return refuse(kNotFound, "there is no command " + std::to_string(command) +
                                 "; \"veltrixctl commands\" lists them all");
  }
  if (actionKind(command) != ActionKind::kPlain) {
    return refuse(kBadInput, "command " + std::to_string(command) + " has parameters; say " +
                                 kindName(command) + " and what it takes instead");
  }
  return actionFor(command);
}

}  // namespace veltrix::ctl
