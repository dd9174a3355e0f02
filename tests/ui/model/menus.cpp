#include "tests/ui/model/menus.h"

#include <algorithm>
#include <cctype>

#include "keyboard/key_names.h"
#include "tests/ui/model/record.h"

namespace veltrix::model {
namespace {

constexpr int kPrimaryClick = 1;
constexpr int kLastClickButton = 3;
constexpr std::size_t kLongestTitle = 400;

std::string lastComponent(std::string path) {
  while (path.size() > 1 && path.back() == '/') {
    path.pop_back();
  }
  return path.substr(path.rfind('/') + 1);
}

std::string shortened(std::string url) {
  if (url.starts_with("http://") && url.size() > 7) {
    url.erase(0, 7);
  }
  if (url.starts_with("www.") && url.size() > 4) {
    url.erase(0, 4);
  }
  if (url.ends_with('/') && url.size() > 1) {
    url.pop_back();
  }
  return url;
}

std::string descriptionOf(const Json& action, int command, const Catalogue& catalogue, const Json& snippets) {
  const std::uint16_t held = lowBitsOf(action, "mod");
  std::string name = catalogue.titleOf(command, snippets);
  if (name.empty()) {
    name = "-";
  }
  switch (command) {
    case 10: {
      const auto key = static_cast<std::uint16_t>(lowBitsOf(action, "key") % 256);
      return "Type " + GetKeyCombinationNameWithSepAndCase(key, held, std::nullopt, std::nullopt, true);
    }
    case 70:
      return lastComponent(textOf(action, "str"));
    case 71:
      return textOf(action, "str");
    case 72:
      return shortened(textOf(action, "str"));
    default:
      return isClick(command) && held != 0 ? GetModifiersName(255, held) + "+" + name : name;
  }
}

// A title stands on one line, and a very long one is cut.
std::string oneLine(std::string text) {
  std::ranges::replace_if(
      text, [](unsigned char character) { return std::iscntrl(character) != 0; }, ' ');
  return text.substr(0, kLongestTitle);
}

}  // namespace

bool isPlainClick(const Json& action) {
  return intOf(action, "cmd") == kPrimaryClick && intOf(action, "mod") == 0;
}

bool anyPlainClick(const Json& entry, int first, int excluded) {
  for (int button = first; button <= kLastClickButton; ++button) {
    if (button != excluded && isPlainClick(actionOf(entry, button))) {
      return true;
    }
  }
  return false;
}

Menu showMenu(Json& entry, int button, const std::vector<int>& tags, const Catalogue& catalogue,
              const Json& snippets) {
  if (button == 0 && hasAction(entry, 0) && intOf(actionOf(entry, 0), "cmd") != kPrimaryClick &&
      !anyPlainClick(entry, 1, -1)) {
    entry["buttons"]["00"]["cmd"] = kPrimaryClick;
  }
  const Json& action = actionOf(entry, button);
  const int command = intOf(action, "cmd");
  const std::string label = textOf(action, "label");
  Menu menu;
  menu.enabled = command != kPrimaryClick || anyPlainClick(entry, 0, button);
  const bool listed = std::ranges::find(tags, command) != tags.end();
  if (listed && label.empty() && lowBitsOf(action, "mod") == 0) {
    menu.tag = command;
    return menu;
  }
  menu.tag = kExtraItem;
  menu.title = label.empty() ? descriptionOf(action, command, catalogue, snippets) : label;
  menu.title = oneLine(menu.title.empty() ? "-" : menu.title);
  return menu;
}

void takeMenu(Json& action, int tag) {
  if (tag < 0) {
    return;
  }
  action = {{"cmd", tag}};
  if (tag > 0 && tag < 19) {
    action["mod"] = 0;
  }
  if (tag == 10 || tag == 11) {
    action["key"] = 255;
  }
  if (isScroll(tag)) {
    action["cnt"] = 1;
  }
}

}  // namespace veltrix::model
