#include <optional>
#include <string>
#include <utility>

#include "actions/assignment_title.h"
#include "editor/edit_controller.h"
#include "helperlink/device_buttons.h"
#include "pane/controller.h"
#include "pane/menu_choice.h"
#include "pane/menu_template.h"
#include "pane/outlets.h"
#include "pane/pref_pane.h"
#include "settings/button_key.h"
#include "settings/settings_keys.h"

using veltrix::AssignmentMenu;
using veltrix::MenuChoice;
using veltrix::plist::Dictionary;

void VeltrixController::fillButtonGroups() {
  const auto& ui = fOutlets->buttons;
  fDev1ButtonMenu = {ui.outBtnMenuDev1Button1, ui.outBtnMenuDev1Button2, ui.outBtnMenuDev1Button3,
                     ui.outBtnMenuDev1Button4, ui.outBtnMenuDev1Chord1,  ui.outBtnMenuDev1Chord2};
  fDev2ButtonMenu = {ui.outBtnMenuDev2Button1, ui.outBtnMenuDev2Button2, ui.outBtnMenuDev2Button3,
                     ui.outBtnMenuDev2Button4, ui.outBtnMenuDev2Chord1,  ui.outBtnMenuDev2Chord2};
  fDev3ButtonMenu = {ui.outBtnMenuDev3Button1, ui.outBtnMenuDev3Button2, ui.outBtnMenuDev3Button3,
                     ui.outBtnMenuDev3Button4};
  fDev4ButtonMenu = {ui.outBtnMenuDev4Button1, ui.outBtnMenuDev4Button2, ui.outBtnMenuDev4Chord1};
  fDev5ButtonMenu = {ui.outBtnMenuDev5Button1, ui.outBtnMenuDev5Button2, ui.outBtnMenuDev5Chord1};
  fDev6ButtonMenu = {ui.outBtnMenuDev6Button1, ui.outBtnMenuDev6Button2, ui.outBtnMenuDev6Chord1};
  fButtonMenuList = {&fDev1ButtonMenu, &fDev2ButtonMenu, &fDev3ButtonMenu,
                     &fDev4ButtonMenu, &fDev5ButtonMenu, &fDev6ButtonMenu};
  for (std::size_t group = 0; group < fButtonMenuList.size(); ++group) {
    fButtonIndexList.at(group) =
        veltrix::buttonNumbers(static_cast<std::int32_t>(group) + veltrix::kFirstModelTab);
    fButtonMenuCount.at(group) = static_cast<std::int32_t>(fButtonIndexList.at(group).size());
  }
}

void VeltrixController::copyTemplateMenu() {
  const veltrix::MenuTemplate items([this](const char* key) { return fPane->vtxLocString(key); });
  for (std::size_t group = 0; group < fButtonMenuList.size(); ++group) {
    for (std::size_t i = 0; i < fButtonIndexList.at(group).size(); ++i) {
      const std::int32_t button = fButtonIndexList.at(group)[i];
      AssignmentMenu* const menu = fButtonMenuList.at(group)->at(i);
      items.copyTo(menu, button);
      menu->setProperty("tag", button);
      connect(menu, &AssignmentMenu::chosen, this, &VeltrixController::actUpdateSettingsFromBtnMenu);
      connect(menu, &AssignmentMenu::editChosen, this, &VeltrixController::actEditAssignment);
    }
  }
}

// The menus of the current device with their buttons; none without a device.
std::vector<VeltrixController::ButtonMenu> VeltrixController::currentMenus() const {
  std::vector<ButtonMenu> menus;
  const std::int32_t group = vtxCurDeviceTabIndex();
  if (group < 0 || group >= static_cast<std::int32_t>(fButtonMenuList.size())) {
    return menus;
  }
  const auto which = static_cast<std::size_t>(group);
  for (std::size_t i = 0; i < static_cast<std::size_t>(fButtonMenuCount.at(which)); ++i) {
    menus.push_back({fButtonMenuList.at(which)->at(i), fButtonIndexList.at(which)[i]});
  }
  return menus;
}

void VeltrixController::fillButtonMenus() {
  for (const ButtonMenu& each : currentMenus()) {
    vtxUpdateMenu(each.menu, each.button);
  }
}

void VeltrixController::readButtonMenus() {
  const Dictionary buttons = fCurSettingsDict.dictionaryFor(veltrix::keys::kButtons);
  for (const ButtonMenu& each : currentMenus()) {
    vtxGetButtonAssignment(buttons.dictionaryFor(veltrix::buttonKey(each.button)), each.menu);
  }
}

void VeltrixController::vtxUpdateMenu(AssignmentMenu* menu, std::int32_t forAssignment) {
  const MenuChoice choice = veltrix::menuChoice(fCurSettingsDict, forAssignment);
  menu->setEnabled(choice.enabled);
  if (choice.ownItemShows && menu->hasTag(choice.command)) {
    menu->removeExtraItem();
    menu->selectTag(choice.command);
  } else {
    menu->showExtraItem(titleOf(choice));
  }
  const QString reason =
      choice.enabled
          ? QString()
          : fPane->vtxLocString("One button has to stay a plain click. Make another one a click first.");
  menu->setAccessibleDescription(reason);
  if (!choice.enabled) {
    menu->setToolTip(reason);
  }
}

QString VeltrixController::titleOf(const MenuChoice& choice) const {
  const auto localize = [this](std::string_view key) {
    return fPane->vtxLocString(std::string(key).c_str()).toStdString();
  };
  return QString::fromStdString(veltrix::assignmentTitle(
      choice.action, choice.command, outControllerEdit->commandTree(), fSnippetsArray, localize));
}

void VeltrixController::vtxGetButtonAssignment(Dictionary action, AssignmentMenu* fromMenu) {
  if (const auto tag = fromMenu->selectedTag()) {
    veltrix::takeMenuChoice(std::move(action), *tag);
  }
}

void VeltrixController::actUpdateSettingsFromBtnMenu() {
  vtxGetSettingsFromUI();
  vtxGetUIFromSettings();
  vtxSavePrefsToFile(fPrefsDict);
}

// Whatever comes of it, the menu still shows its edit item and has to show the assignment again.
void VeltrixController::actEditAssignment(std::int32_t button) {
  const bool confirmed = outControllerEdit->editButtonAction(button, fCurSettingsDict, fSnippetsArray);
  vtxGetUIFromSettings();
  if (confirmed) {
    vtxSavePrefsToFile(fPrefsDict);
  }
}
