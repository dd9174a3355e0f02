#include "actions/assignment_title.h"

#include <optional>
#include <string_view>

#include "actions/action_kind.h"
#include "keyboard/key_names.h"
#include "settings/settings_keys.h"
#include "util/path_text.h"

namespace veltrix {

namespace {

constexpr const char* kNoTitle = "-";
constexpr std::uint32_t kKeyCodeBits = 0xFF;

std::string commandTitle(std::int32_t command, const CommandTree& tree, const plist::Array& snippets,
                         const Localize& localize) {
  const auto place = tree.find(command, snippets, localize);
  return place ? localize(place->commandTitle.value_or("")) : kNoTitle;
}

std::string keystrokeTitle(const plist::Dictionary& action, const Localize& localize) {
  const auto keyCode = static_cast<std::uint16_t>(action.uint32For(keys::kKeyCode) & kKeyCodeBits);
  return localize("Type") + " " +
         GetKeyCombinationNameWithSepAndCase(keyCode, action.uint16For(keys::kModifiers), std::nullopt,
                                             std::nullopt, true);
}

std::string clickTitle(const plist::Dictionary& action, const std::string& title) {
  const std::uint16_t modifiers = action.uint16For(keys::kModifiers);
  return modifiers == 0 ? title : joinKeyNames(GetModifiersName(kNoKeyCode, modifiers), "+", title);
}

std::string lastComponent(const std::string& path) {
  const std::string whole = withoutFinalSlashes(path);
  const auto slash = whole.rfind('/');
  return slash == std::string::npos || whole.size() == 1 ? whole : whole.substr(slash + 1);
}

// Each step leaves at least one character; an address that has only its scheme so far is not shortened.
std::string shortUrl(std::string_view url) {
  constexpr std::string_view kScheme = "http://";
  if (url == kScheme) {
    return std::string(url);
  }
  for (const std::string_view prefix : {kScheme, std::string_view("www.")}) {
    if (url.starts_with(prefix) && url.size() > prefix.size()) {
      url.remove_prefix(prefix.size());
    }
  }
  if (url.ends_with('/') && url.size() > 1) {
    url.remove_suffix(1);
  }
  return std::string(url);
}

}  // namespace

std::string assignmentTitle(const plist::Dictionary& action, std::int32_t command, const CommandTree& tree,
                            const plist::Array& snippets, const Localize& localize) {
  std::string title = action.stringFor(keys::kLabel);
  if (!title.empty()) {
    return title;
  }
  switch (actionKind(command)) {
    case ActionKind::kKeystroke:
      title = keystrokeTitle(action, localize);
      break;
    case ActionKind::kClick:
      title = clickTitle(action, commandTitle(command, tree, snippets, localize));
      break;
    case ActionKind::kItem:
      title = lastComponent(action.stringFor(keys::kText));
      break;
    case ActionKind::kUrl:
      title = shortUrl(action.stringFor(keys::kText));
      break;
    case ActionKind::kApplication:
      title = action.stringFor(keys::kText);
      break;
    case ActionKind::kPlain:
    case ActionKind::kSnippet:
    case ActionKind::kScroll:
    case ActionKind::kScript:
      title = commandTitle(command, tree, snippets, localize);
      break;
  }
  return title.empty() ? kNoTitle : title;
}

}  // namespace veltrix
