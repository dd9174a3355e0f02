// Showing the action in the controls.
#include <QScopedValueRollback>

#include "actions/action_kind.h"
#include "editor/action_values.h"
#include "editor/edit_controller.h"
#include "editor/edit_outlets.h"
#include "editor/snippet_edit.h"
#include "settings/command_classes.h"
#include "settings/settings_keys.h"

using veltrix::ActionKind;
using veltrix::CommandBrowser;

namespace {

// A text that is there already stays untouched, with its cursor and what can be undone.
void show(QLineEdit* field, const std::string& text) {
  const QString shown = QString::fromStdString(text);
  if (field->text() != shown) {
    field->setText(shown);
    field->setCursorPosition(0);
  }
}

void show(QPlainTextEdit* field, const std::string& text) {
  const QString shown = QString::fromStdString(text);
  if (veltrix::fullText(field) != shown) {
    field->setPlainText(shown);
  }
}

void show(const veltrix::ModifierBoxes& boxes, const veltrix::ModifierKeys& held) {
  boxes.control->setChecked(held.control);
  boxes.command->setChecked(held.command);
  boxes.option->setChecked(held.option);
  boxes.shift->setChecked(held.shift);
}

}  // namespace

void VeltrixEditController::vtxGetUIFromSettings() {
  if (!fEditActionDict || fOutlets == nullptr) {
    return;
  }
  const QScopedValueRollback showing(fShows, true);
  const std::int32_t command = fEditActionDict.int32For(veltrix::keys::kCommand);
  show(fOutlets->outMainFieldLabel, fEditActionDict.stringFor(veltrix::keys::kLabel));
  std::int32_t category = -1;
  std::int32_t row = -1;
  fOutlets->outEditBrowser->setSnippets(fSnippetsArray);
  if (findCommandInTree(command, fSnippetsArray, &category, nullptr, &row, nullptr)) {
    fOutlets->outEditBrowser->selectRow(CommandBrowser::kCategories, category);
    fOutlets->outEditBrowser->selectRow(CommandBrowser::kCommands, row);
  }
  showParameters(command);
}

void VeltrixEditController::showParameters(std::int32_t command) {
  const ActionKind kind = veltrix::actionKind(command);
  switch (kind) {
    case ActionKind::kClick:
      show(veltrix::clickBoxes(*fOutlets), veltrix::modifierKeysOf(fEditActionDict));
      break;
    case ActionKind::kKeystroke:
      show(fOutlets->outActKeyFieldKeystroke, veltrix::keystrokeText(fEditActionDict));
      show(veltrix::keystrokeBoxes(*fOutlets), veltrix::modifierKeysOf(fEditActionDict));
      break;
    case ActionKind::kSnippet:
      showSnippet(static_cast<std::uint16_t>(command) - veltrix::kFirstSnippetCommand);
      break;
    case ActionKind::kScroll:
      fOutlets->outActScrollMenuSpeed->selectTag(veltrix::scrollCountOf(fEditActionDict));
      break;
    case ActionKind::kApplication:
      show(fOutlets->outActAppFieldApp, veltrix::applicationText(fEditActionDict));
      break;
    case ActionKind::kItem:
      show(fOutlets->outActItemFieldItem, veltrix::itemText(fEditActionDict));
      break;
    case ActionKind::kUrl:
      show(fOutlets->outActURLFieldURL, fEditActionDict.stringFor(veltrix::keys::kText));
      break;
    case ActionKind::kScript:
      show(fOutlets->outActAppleScriptFieldScript, fEditActionDict.stringFor(veltrix::keys::kText));
      break;
    case ActionKind::kPlain:
      break;
  }
  fOutlets->outMainTabsParams->setCurrentIndex(static_cast<int>(kind));
}

void VeltrixEditController::showSnippet(std::int32_t index) {
  show(fOutlets->outActSnippetFieldName, snippetNameFromArray(fSnippetsArray, index).value_or(""));
  show(fOutlets->outActSnippetFieldText, veltrix::snippetText(fSnippetsArray, index));
}
