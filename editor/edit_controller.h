#pragma once

#include <QObject>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "actions/command_tree.h"
#include "editor/chosen_application.h"
#include "editor/editor_host.h"
#include "keyboard/keystroke_receiver.h"
#include "platform/bundle.h"
#include "platform/property_list.h"

class QWidget;

namespace veltrix {
struct EditOutlets;

// The sheets in which applications and items are chosen; `parent` is the editor's window. Nothing comes back
// when the person cancelled. While a sheet runs, the action may become another.
struct EditChoosers {
  std::function<std::optional<ChosenApplication>(QWidget* parent)> chooseApplication;
  std::function<std::optional<std::string>(QWidget* parent)> chooseItem;  // an absolute path
};
}  // namespace veltrix

// The dialog in which a person sets what one button does. It works on a copy of the button's action, which
// takes the place of the action only after OK; snippets are edited in place and keep their changes after
// Cancel. Its widgets are made when it is opened first. On the main thread only.
class VeltrixEditController : public QObject, public veltrix::KeystrokeReceiver {
  Q_OBJECT

 public:
  // `systemVersion` as MacOSXVersion gives it. The bundle and the host must outlive the controller; dialogs
  // become children of `parent`.
  VeltrixEditController(const veltrix::Bundle& bundle, veltrix::EditorHost* host, QWidget* parent,
                        std::uint32_t systemVersion);
  ~VeltrixEditController() override;

  // Edits the action of a button of the device entry `forSettings`. True when the person confirmed, and the
  // entry then holds the new action; false without a dialog when the button has no action.
  bool editButtonAction(std::int32_t button, const veltrix::plist::Dictionary& forSettings,
                        veltrix::plist::Array andSnippets);

  // The first place of a command in the tree, in outputs that may each be null: -1 and no title when it is
  // not there. Titles are not localised; with snippets (not null) a snippet's own name is its title.
  bool findCommandInTree(std::int32_t command, const veltrix::plist::Array& withSnippets,
                         std::int32_t* foundCategoryIndex, std::optional<std::string>* foundCategoryName,
                         std::int32_t* foundCommandIndex, std::optional<std::string>* foundCommandName) const;
  std::optional<std::string> snippetNameFromArray(const veltrix::plist::Array& snippets,
                                                  std::int32_t atIndex) const;
  const veltrix::CommandTree& commandTree() const { return fTree; }
  veltrix::plist::Array vtxGetAssignmentsTree() const { return fTree.categories(); }

  // The copy that is being edited; null before the first opening.
  veltrix::plist::Dictionary vtxGetCurrentAction() const { return fEditActionDict; }

  // Shows the action in the controls; nothing before the first opening.
  void vtxGetUIFromSettings();

  // Takes the selected command and its parameters into the action. With `reset` the parameters start afresh,
  // whatever the controls say.
  void vtxGetSettingsFromUI(bool reset);

  // The actions of controls.
  void actUpdateSettings(QObject* sender);  // a control of a parameter page
  void actBrowser();
  void actButtonChooseApp();
  void actButtonChooseItem();
  void controlTextDidChange(QWidget* field);

  // In place of the real sheets.
  void setChoosers(veltrix::EditChoosers choosers) { fChoosers = std::move(choosers); }

  bool vtxOverrideKeysIsActive() const override;
  void vtxReceiveKeystroke(std::uint8_t keyCode, char16_t withCharacter, std::uint16_t andModifiers) override;

 private:
  void loadInterface();
  void connectActions();
  void selectTabs(std::int32_t button);
  void showParameters(std::int32_t command);
  void showSnippet(std::int32_t index);
  void editSnippet(QWidget* field);
  std::string localized(std::string_view key) const;

  const veltrix::Bundle& fBundle;
  veltrix::EditorHost* fHost;
  QWidget* fParent;
  veltrix::CommandTree fTree;
  veltrix::EditChoosers fChoosers;
  std::unique_ptr<veltrix::EditOutlets> fOutlets;  // null before the first opening
  veltrix::plist::Dictionary fEditActionDict;
  veltrix::plist::Array fSnippetsArray;
  bool fShows = false;  // the controls are being filled; what they report is no doing of a person
};

extern VeltrixEditController* gVeltrixEditController;  // the one instance; null before it is made
