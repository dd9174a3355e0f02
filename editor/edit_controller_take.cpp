// Taking what a person does with the controls into the action or the snippets.
#include <QVariant>

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

constexpr int kRefreshTag = 71;  // of controls whose change has to be followed by others

veltrix::ModifierKeys heldKeys(const veltrix::ModifierBoxes& boxes) {
  return {.command = boxes.command->isChecked(),
          .shift = boxes.shift->isChecked(),
          .option = boxes.option->isChecked(),
          .control = boxes.control->isChecked()};
}

}  // namespace

void VeltrixEditController::vtxGetSettingsFromUI(bool reset) {
  if (!fEditActionDict || fOutlets == nullptr) {
    return;
  }
  const std::int32_t command = fOutlets->outEditBrowser->selectedCommand();
  veltrix::takeAction(fEditActionDict, command,
                      {.clickKeys = heldKeys(veltrix::clickBoxes(*fOutlets)),
                       .keystrokeKeys = heldKeys(veltrix::keystrokeBoxes(*fOutlets)),
                       .scrollCount = fOutlets->outActScrollMenuSpeed->tag()},
                      reset);
  if (veltrix::actionKind(command) == ActionKind::kPlain) {
    fOutlets->outMainTabsParams->setCurrentIndex(static_cast<int>(ActionKind::kPlain));
  }
}

void VeltrixEditController::actUpdateSettings(QObject* sender) {
  if (fShows) {
    return;
  }
  vtxGetSettingsFromUI(false);
  if (sender->property("tag").toInt() == kRefreshTag) {
    vtxGetUIFromSettings();
  }
}

// A category stands for its first command.
void VeltrixEditController::actBrowser() {
  CommandBrowser* const browser = fOutlets->outEditBrowser;
  if (browser->selectedColumn() == CommandBrowser::kCategories) {
    browser->selectRow(CommandBrowser::kCommands, 0);
  }
  vtxGetSettingsFromUI(true);
  vtxGetUIFromSettings();
}

void VeltrixEditController::controlTextDidChange(QWidget* field) {
  if (fShows || !fEditActionDict || fOutlets == nullptr) {
    return;
  }
  if (field == fOutlets->outMainFieldLabel) {
    veltrix::storeLabel(fEditActionDict, fOutlets->outMainFieldLabel->text().toStdString());
  } else if (field == fOutlets->outActURLFieldURL) {
    veltrix::storeText(fEditActionDict, fOutlets->outActURLFieldURL->text().toStdString());
  } else if (field == fOutlets->outActAppleScriptFieldScript) {
    veltrix::storeText(fEditActionDict,
                       veltrix::fullText(fOutlets->outActAppleScriptFieldScript).toStdString());
  } else {
    editSnippet(field);
  }
}

// The snippets belong to all buttons: they are changed at once, whatever becomes of the action.
void VeltrixEditController::editSnippet(QWidget* field) {
  const std::int32_t command = fOutlets->outEditBrowser->selectedCommand();
  if (veltrix::actionKind(command) != ActionKind::kSnippet) {
    return;
  }
  const std::int32_t index = command - veltrix::kFirstSnippetCommand;
  if (field == fOutlets->outActSnippetFieldName) {
    veltrix::setSnippetName(fSnippetsArray, index, fOutlets->outActSnippetFieldName->text().toStdString());
    fOutlets->outEditBrowser->refreshTitles();
  } else if (field == fOutlets->outActSnippetFieldText) {
    veltrix::setSnippetText(fSnippetsArray, index,
                            veltrix::fullText(fOutlets->outActSnippetFieldText).toStdString());
  }
}

bool VeltrixEditController::vtxOverrideKeysIsActive() const {
  return fOutlets != nullptr && fOutlets->outEditWindow->isVisible() &&
         fOutlets->outEditWindow->isActiveWindow() && fOutlets->outActKeyFieldKeystroke->hasFocus();
}

void VeltrixEditController::vtxReceiveKeystroke(std::uint8_t keyCode, char16_t /*withCharacter*/,
                                                std::uint16_t andModifiers) {
  if (veltrix::storeKeystroke(fEditActionDict, keyCode, andModifiers)) {
    vtxGetUIFromSettings();
  }
}

// The sheet runs; its answer counts only if the action is still of its kind afterwards.
void VeltrixEditController::actButtonChooseApp() {
  const auto chosen = fChoosers.chooseApplication(fOutlets->outEditWindow);
  if (chosen && veltrix::storeApplication(fEditActionDict, chosen->name, chosen->identifier)) {
    vtxGetUIFromSettings();
  }
}

void VeltrixEditController::actButtonChooseItem() {
  const auto chosen = fChoosers.chooseItem(fOutlets->outEditWindow);
  if (chosen && veltrix::storeItem(fEditActionDict, *chosen)) {
    vtxGetUIFromSettings();
  }
}
