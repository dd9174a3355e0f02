#include "tests/ui/model/editor_model.h"

#include <cstdlib>

#include "keyboard/key_names.h"
#include "tests/ui/model/record.h"

namespace veltrix::model {
namespace {

constexpr std::array<int, 4> kKeyBits = {0x0100, 0x0200, 0x0800, 0x1000};
constexpr int kNoKey = 255;
constexpr int kFastest = 20;  // the speeds of the pop-up are 1 to this

std::string textOr(const std::string& text, const std::string& other) {
  return text.empty() ? other : text;
}

}  // namespace

Page pageOf(int command) {
  if (isClick(command)) {
    return Page::kClick;
  }
  if (isScroll(command)) {
    return Page::kScroll;
  }
  if (command >= kFirstSnippet && command <= kLastSnippet) {
    return Page::kSnippet;
  }
  switch (command) {
    case 10:
      return Page::kKeystroke;
    case 70:
      return Page::kItem;
    case 71:
      return Page::kApplication;
    case 72:
      return Page::kUrl;
    case 73:
      return Page::kScript;
    default:
      return Page::kNone;
  }
}

void EditorModel::open(const Json& action, Json* snippets) {
  fAction = action;
  fSnippets = snippets;
  show();
}

void EditorModel::show() {
  const int command = intOf(fAction, "cmd");
  fLabel = textOf(fAction, "label");
  fPlace = fCatalogue.find(command).value_or(fPlace);
  fPage = pageOf(command);
  fText = textOf(fAction, "str");
  for (std::size_t i = 0; i < kKeyBits.size(); ++i) {
    fKeys.at(i) = (intOf(fAction, "mod") & kKeyBits.at(i)) != 0;
  }
  switch (fPage) {
    case Page::kSnippet:
      fText = snippetName(*fSnippets, command - kFirstSnippet);
      fSnippetBody = snippetText(*fSnippets, command - kFirstSnippet);
      break;
    case Page::kItem:
      fText = textOr(fText, "-");
      break;
    case Page::kApplication:
      fText = textOr(fText, textOr(textOf(fAction, "bndl"), "-"));
      break;
    case Page::kKeystroke: {
      const auto key = static_cast<std::uint16_t>(lowBitsOf(fAction, "key") % 256);
      fText = key == kNoKey ? ""
                            : GetKeyCombinationNameWithSepAndCase(key, lowBitsOf(fAction, "mod"),
                                                                  std::nullopt, std::nullopt, true);
      break;
    }
    case Page::kScroll:
      if (const int amount = std::abs(intOf(fAction, "cnt")); amount >= 1 && amount <= kFastest) {
        fSpeed = amount;
      }
      break;
    default:
      break;
  }
}

void EditorModel::take(bool reset) {
  if (reset) {
    for (const char* key : {"mod", "btn", "clk", "key", "char", "freq", "cnt", "str"}) {
      fAction.erase(key);
    }
  }
  const int command = fCatalogue.commandAt(fPlace);
  fAction["cmd"] = command;
  switch (pageOf(command)) {
    case Page::kClick:
      takeKeys(reset);
      break;
    case Page::kKeystroke:
      fAction["key"] = reset ? kNoKey : lowBitsOf(fAction, "key") % 256;
      takeKeys(reset);
      break;
    case Page::kScroll:
      fAction["cnt"] = reset ? 1 : fSpeed;
      break;
    case Page::kApplication:
      fAction["bndl"] = textOf(fAction, "bndl");
      [[fallthrough]];
    case Page::kItem:
    case Page::kUrl:
    case Page::kScript:
      fAction["str"] = textOf(fAction, "str");
      break;
    case Page::kSnippet:
    case Page::kNone:
      break;
  }
}

void EditorModel::takeKeys(bool reset) {
  int sum = 0;
  for (std::size_t i = 0; i < kKeyBits.size() && !reset; ++i) {
    sum += fKeys.at(i) ? kKeyBits.at(i) : 0;
  }
  fAction["mod"] = sum;
}

void EditorModel::chooseCategory(int category) {
  fPlace = {category, 0};
  take(true);
  show();
}

void EditorModel::chooseCommand(int row) {
  fPlace.command = row;
  take(true);
  show();
}

void EditorModel::toggleKey(int which) {
  bool& state = fKeys.at(static_cast<std::size_t>(which));
  state = !state;
  take(false);
  show();
}

void EditorModel::chooseSpeed(int amount) {
  fSpeed = amount;
  take(false);
}

void EditorModel::pressKeys(int keyCode, int modifiers) {
  fAction["key"] = keyCode;
  fAction["mod"] = modifiers;
  show();
}

// Where nothing was and nothing is typed, nothing changes.
void EditorModel::typeText(const std::string& text) {
  if (!text.empty() || !fText.empty()) {
    fText = text;
    fAction["str"] = text;
  }
}

void EditorModel::typeSnippetName(const std::string& name) {
  editSnippet("name", &fText, name);
}

void EditorModel::typeSnippetText(const std::string& text) {
  editSnippet("text", &fSnippetBody, text);
}

void EditorModel::editSnippet(const char* key, std::string* shown, const std::string& text) {
  if (text.empty() && shown->empty()) {
    return;
  }
  const auto index = static_cast<std::size_t>(fCatalogue.commandAt(fPlace) - kFirstSnippet);
  while (fSnippets->size() <= index) {
    fSnippets->push_back({{"text", ""}});
  }
  (*fSnippets)[index][key] = text;
  *shown = text;
}

void EditorModel::typeLabel(const std::string& label) {
  if (label.empty() && fLabel.empty()) {
    return;
  }
  fLabel = label;
  if (label.empty()) {
    fAction.erase("label");
  } else {
    fAction["label"] = label;
  }
}

}  // namespace veltrix::model
