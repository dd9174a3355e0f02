#include <QDialog>
#include <QSlider>

#include "tests/ui/model/player.h"
#include "tests/ui/model/sheet_hands.h"

namespace veltrix::model {
namespace {

constexpr int kSpeeds = 20;

constexpr int kCommandsWithParameters[] = {1, 2, 16, 10, 10, 21, 72, 73, 180, 182, 189};

const char* const kLines[] = {"", "Mine", "Zz 9", "http://www.example.org/", "x"};
const char* const kTexts[] = {"", "one", "two lines\nof text", "echo 'done'"};
const char* const kDigits[] = {"0", "7", "42", "130", "99999"};
const char* const kKeyBoxes[] = {"Command", "Shift", "Option", "Control"};

template <std::size_t N>
const char* pick(const char* const (&from)[N], int number) {
  return from[static_cast<std::size_t>(number) % N];
}

std::string quoted(const char* text) {
  return Json(text).dump();
}

bool confirms(Ending ending) {
  return ending == Ending::kOkButton || ending == Ending::kReturn;
}

const char* nameOf(Ending ending) {
  switch (ending) {
    case Ending::kOkButton:
      return "  click OK";
    case Ending::kReturn:
      return "  press Return";
    case Ending::kCancelButton:
      return "  click Cancel";
    case Ending::kEscape:
      break;
  }
  return "  press Escape";
}

}  // namespace

void Player::editButton(const Step& step) {
  const std::vector<int> buttons = buttonsOf(fModel.deviceTab());
  if (buttons.empty()) {
    return;
  }
  const int button = buttons.at(static_cast<std::size_t>(step.which) % buttons.size());
  if (!fModel.canEdit(button)) {
    return;
  }
  note("edit button " + std::to_string(button));
  fEditor.open(fModel.editedAction(button), &fModel.snippets());
  const auto inDialog = [&](QDialog* dialog) {
    compareEditor(fEditor, dialog, &fProblems);
    for (const EditStep& edit : step.edits) {
      if (!fProblems.empty()) {
        return;
      }
      if (takeEdit(edit, dialog)) {
        ++fTally->edits.at(static_cast<std::size_t>(edit.kind));
        compareEditor(fEditor, dialog, &fProblems);
      }
    }
    note(nameOf(step.ending));
    endDialog(dialog, step.ending, "outMainFieldLabel");
  };
  acting([&] { fHands.chooseMenu(fModel.deviceTab(), button, kEditItem); }, inDialog);
  if (confirms(step.ending)) {
    fModel.editedAction(button) = fEditor.action();
  }
  fModel.endEditing(confirms(step.ending));
}

bool Player::takeEdit(const EditStep& edit, QDialog* dialog) {
  switch (edit.kind) {
    case EditKind::kCategory:
      chooseCategory(edit.which % fEditor.catalogue().categories(), dialog);
      return true;
    case EditKind::kCommand: {
      const int rows = fEditor.catalogue().commands(fEditor.place().category);
      if (rows > 0) {
        chooseCommand(edit.which % rows, dialog);
      }
      return rows > 0;
    }
    case EditKind::kPlace: {
      const auto place = fEditor.catalogue().find(
          kCommandsWithParameters[static_cast<std::size_t>(edit.which) % std::size(kCommandsWithParameters)]);
      chooseCategory(place->category, dialog);
      chooseCommand(place->command, dialog);
      return true;
    }
    case EditKind::kLabel: {
      const char* const label = pick(kLines, edit.which);
      note("  type " + quoted(label) + " as the label");
      fEditor.typeLabel(label);
      typeOver(dialog, "outMainFieldLabel", label);
      return true;
    }
    case EditKind::kParameter:
      break;
  }
  return changeParameter(edit.which, dialog);
}

void Player::chooseCategory(int row, QDialog* dialog) {
  note("  choose category " + std::to_string(row));
  fEditor.chooseCategory(row);
  clickRow(dialog, "browserCategories", row);
}

void Player::chooseCommand(int row, QDialog* dialog) {
  note("  choose command " + std::to_string(row));
  fEditor.chooseCommand(row);
  clickRow(dialog, "browserCommands", row);
}

bool Player::changeParameter(int which, QDialog* dialog) {
  const Page page = fEditor.page();
  switch (page) {
    case Page::kClick:
      clickKeyBox(which, dialog);
      break;
    case Page::kKeystroke:
      changeKeystroke(which, dialog);
      break;
    case Page::kSnippet:
      changeSnippet(which, dialog);
      break;
    case Page::kScroll: {
      const int amount = which % kSpeeds + 1;
      note("  choose speed " + std::to_string(amount));
      fEditor.chooseSpeed(amount);
      chooseSpeedOf(dialog, amount);
      break;
    }
    case Page::kUrl:
    case Page::kScript: {
      const char* const text = page == Page::kUrl ? pick(kLines, which) : pick(kTexts, which);
      note("  type " + quoted(text));
      fEditor.typeText(text);
      typeOver(dialog, page == Page::kUrl ? "outActURLFieldURL" : "outActAppleScriptFieldScript", text);
      break;
    }
    case Page::kApplication:
    case Page::kItem:
    case Page::kNone:
      return false;
  }
  ++fTally->pages.at(static_cast<std::size_t>(page));
  return true;
}

void Player::clickKeyBox(int which, QDialog* dialog) {
  const std::string box = (fEditor.page() == Page::kClick ? "outActClickBox" : "outActKeyBox") +
                          std::string(pick(kKeyBoxes, which));
  note("  click " + box);
  fEditor.toggleKey(which % 4);
  clickBoxOf(dialog, box.c_str());
}

void Player::changeKeystroke(int which, QDialog* dialog) {
  if (which % 3 == 0) {
    clickKeyBox(which / 3, dialog);
    return;
  }
  const Keys& keys = keysAt(which / 3);
  note(std::string("  press ") + keys.name);
  fEditor.pressKeys(keys.keyCode, keys.modifiers);
  pressKeysIn(dialog, keys);
}

void Player::changeSnippet(int which, QDialog* dialog) {
  if (which % 2 == 0) {
    const char* const name = pick(kLines, which / 2);
    note("  type " + quoted(name) + " as the snippet's name");
    fEditor.typeSnippetName(name);
    typeOver(dialog, "outActSnippetFieldName", name);
  } else {
    const char* const text = pick(kTexts, which / 2);
    note("  type " + quoted(text) + " as the snippet's text");
    fEditor.typeSnippetText(text);
    typeOver(dialog, "outActSnippetFieldText", text);
  }
}

void Player::editParameters(const Step& step) {
  if (!fModel.canEditParameters()) {
    return;
  }
  note("open the scroll parameters");
  fModel.openTab(kScrollingTab);
  if (!fModel.entry().contains("param")) {
    acting([&] { fHands.clickParameters(); });
    return;
  }
  const auto inDialog = [&](QDialog* dialog) {
    std::array<ParametersModel::Range, kParameters> ranges{};
    for (std::size_t row = 0; row < ranges.size(); ++row) {
      const auto* slider = dialog->findChild<QSlider*>(("outParamSlider" + std::to_string(row + 1)).c_str());
      ranges.at(row) = {slider->minimum(), slider->maximum(), slider->singleStep()};
    }
    fParameters.open(fModel.entry().at("param"), ranges);
    compareParameters(fParameters, dialog, &fProblems);
    for (const EditStep& edit : step.edits) {
      if (!fProblems.empty()) {
        return;
      }
      takeParameterEdit(edit, dialog);
      compareParameters(fParameters, dialog, &fProblems);
    }
    note(nameOf(step.ending));
    endDialog(dialog, step.ending, "outParamField1");
  };
  acting([&] { fHands.clickParameters(); }, inDialog);
  if (confirms(step.ending)) {
    fModel.storeParameters(fParameters.parameters());
  }
}

void Player::takeParameterEdit(const EditStep& edit, QDialog* dialog) {
  const int row = edit.which / 20 % kParameters;
  const std::string number = std::to_string(row + 1);
  if (edit.which % 2 == 0) {
    const int step = edit.which % 4 == 0 ? 1 : -1;
    note("  move slider " + number + (step > 0 ? " on" : " back"));
    fParameters.moveSlider(row, step);
    moveSliderOf(dialog, ("outParamSlider" + number).c_str(), step);
  } else {
    const char* const digits = pick(kDigits, edit.which / 2);
    note("  type " + quoted(digits) + " into field " + number);
    fParameters.typeDigits(row, digits);
    typeOver(dialog, ("outParamField" + number).c_str(), digits);
  }
}

}  // namespace veltrix::model
