#include "editor/edit_controller.h"

#include "editor/application_chooser.h"
#include "editor/edit_outlets.h"
#include "editor/item_chooser.h"
#include "settings/button_key.h"
#include "settings/deep_copy.h"
#include "settings/settings_keys.h"

using veltrix::EditOutlets;
using veltrix::plist::Array;
using veltrix::plist::Dictionary;

VeltrixEditController* gVeltrixEditController = nullptr;

namespace {

constexpr std::int32_t kConfirmed = 1;

template <typename T>
void give(T* output, T value) {
  if (output != nullptr) {
    *output = std::move(value);
  }
}

}  // namespace

VeltrixEditController::VeltrixEditController(const veltrix::Bundle& bundle, veltrix::EditorHost* host,
                                             QWidget* parent, std::uint32_t systemVersion)
    : fBundle(bundle),
      fHost(host),
      fParent(parent),
      fTree(veltrix::CommandTree::load(bundle, systemVersion)),
      fChoosers{veltrix::chooseApplication, veltrix::chooseItem} {
  gVeltrixEditController = this;
}

VeltrixEditController::~VeltrixEditController() {
  if (gVeltrixEditController == this) {
    gVeltrixEditController = nullptr;
  }
}

std::string VeltrixEditController::localized(std::string_view key) const {
  return fBundle.localizedString(key, "", veltrix::kStringTable);
}

bool VeltrixEditController::findCommandInTree(std::int32_t command, const Array& withSnippets,
                                              std::int32_t* foundCategoryIndex,
                                              std::optional<std::string>* foundCategoryName,
                                              std::int32_t* foundCommandIndex,
                                              std::optional<std::string>* foundCommandName) const {
  const auto found =
      fTree.find(command, withSnippets, [this](std::string_view key) { return localized(key); });
  const veltrix::CommandPlace place = found.value_or(veltrix::CommandPlace());
  give(foundCategoryIndex, place.categoryIndex);
  give(foundCategoryName, place.categoryTitle);
  give(foundCommandIndex, place.commandIndex);
  give(foundCommandName, place.commandTitle);
  return found.has_value();
}

std::optional<std::string> VeltrixEditController::snippetNameFromArray(const Array& snippets,
                                                                       std::int32_t atIndex) const {
  return veltrix::snippetName(snippets, atIndex, [this](std::string_view key) { return localized(key); });
}

bool VeltrixEditController::editButtonAction(std::int32_t button, const Dictionary& forSettings,
                                             Array andSnippets) {
  const std::string key = veltrix::buttonKey(button);
  Dictionary buttons = forSettings.dictionaryFor(veltrix::keys::kButtons);
  const Dictionary copy = veltrix::mutableDeepAutoreleasedCopy(buttons.dictionaryFor(key));
  if (!copy) {
    return false;
  }
  fEditActionDict = copy;
  fSnippetsArray = std::move(andSnippets);
  loadInterface();
  vtxGetUIFromSettings();
  selectTabs(button);
  fOutlets->outEditBrowser->focusCommands();
  if (fHost->modalDialog(fOutlets->outEditWindow) != kConfirmed) {
    return false;
  }
  buttons.set(key, fEditActionDict);
  return true;
}

void VeltrixEditController::loadInterface() {
  if (fOutlets != nullptr) {
    return;
  }
  fOutlets = std::make_unique<EditOutlets>();
  veltrix::makeEditInterface(
      fParent, &fTree, [this](std::string_view key) { return localized(key); }, fOutlets.get());
  fOutlets->outEditBrowser->setTree(&fTree, [this](std::string_view key) { return localized(key); });
  connectActions();
}

void VeltrixEditController::connectActions() {
  const EditOutlets& out = *fOutlets;
  connect(out.editButtonBox, &QDialogButtonBox::accepted, this, [this] { fHost->actModalButtonOK(); });
  connect(out.editButtonBox, &QDialogButtonBox::rejected, this, [this] { fHost->actModalButtonCancel(); });
  connect(out.outEditBrowser, &veltrix::CommandBrowser::browsed, this, &VeltrixEditController::actBrowser);
  for (const veltrix::ModifierBoxes& boxes : {veltrix::clickBoxes(out), veltrix::keystrokeBoxes(out)}) {
    for (QCheckBox* box : {boxes.control, boxes.command, boxes.option, boxes.shift}) {
      connect(box, &QCheckBox::toggled, this, [this, box] { actUpdateSettings(box); });
    }
  }
  // Choosing the shown speed once more counts, too: the action may hold another one.
  const auto speedChosen = [this] { actUpdateSettings(fOutlets->outActScrollMenuSpeed); };
  connect(out.outActScrollMenuSpeed, &QComboBox::activated, this, speedChosen);
  connect(out.outActScrollMenuSpeed, &QComboBox::currentIndexChanged, this, speedChosen);
  for (QLineEdit* field : {out.outMainFieldLabel, out.outActSnippetFieldName, out.outActURLFieldURL}) {
    connect(field, &QLineEdit::textChanged, this, [this, field] { controlTextDidChange(field); });
  }
  for (QPlainTextEdit* field : {out.outActSnippetFieldText, out.outActAppleScriptFieldScript}) {
    connect(field, &QPlainTextEdit::textChanged, this, [this, field] { controlTextDidChange(field); });
  }
  connect(out.buttonActChooseApp, &QPushButton::clicked, this, &VeltrixEditController::actButtonChooseApp);
  connect(out.buttonActChooseItem, &QPushButton::clicked, this, &VeltrixEditController::actButtonChooseItem);
}

void VeltrixEditController::selectTabs(std::int32_t button) {
  const std::int32_t device = fHost->vtxCurDeviceTabIndex();
  if (device < 0 || device >= veltrix::kModelPageCount) {
    return;
  }
  fOutlets->outEditTabsDevices->setCurrentIndex(device);
  fOutlets->fEditTabsButtons[static_cast<std::size_t>(device)]->setCurrentIndex(
      fHost->vtxCurAssignmentTabIndex(button));
}
