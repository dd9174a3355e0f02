#include "tests/ui/model/pane_model.h"

#include <algorithm>
#include <set>
#include <utility>

namespace veltrix::model {

PaneModel::PaneModel(Catalogue catalogue, Json factory, Json file, std::vector<int> menuTags)
    : fCatalogue(std::move(catalogue)),
      fFactory(std::move(factory)),
      fFile(std::move(file)),
      fMenuTags(std::move(menuTags)) {}

void PaneModel::open() {
  fControls = {};
  fDocument = merged(fFile, fFactory);
  if (!fDocument.contains("snippets")) {
    fDocument["snippets"] = Json::array();
  }
  fHasParameterButton = boolOf(fDocument, "paramUI");
  fEntry = 0;
  fDeviceTab = kNoDevice;
  fKnown.clear();
  fKnownCount = -1;
  fill();
  comeBack();
}

void PaneModel::leave() {
  read();
  save();
  fMessages.emplace_back("VXR0");
}

void PaneModel::comeBack() {
  poll();
  fMessages.emplace_back("VXR1");
}

void PaneModel::resignActive() {
  read();
  save();
}

void PaneModel::plug(std::vector<Device> devices) {
  fPlugged = std::move(devices);
  poll();
}

void PaneModel::grantAccess(bool granted) {
  fAccess = granted;
  poll();
}

// Only another number of trackballs is noticed.
void PaneModel::poll() {
  fKnown = fPlugged;
  const int count = static_cast<int>(fKnown.size());
  if (count == fKnownCount) {
    return;
  }
  fKnownCount = count;
  showEntryFor(0);
  for (std::size_t kind = 0; kind < fControls.kinds.size(); ++kind) {
    fControls.kinds.at(kind) =
        std::ranges::any_of(fKnown, [&](const Device& device) { return device.product == kKinds[kind]; });
    if (kKinds[kind] == intOf(entry(), "device product id")) {
      fControls.kind = static_cast<int>(kind);
    }
  }
}

void PaneModel::showEntryFor(std::uint16_t preferred) {
  const Found found = findEntry(fDocument.at("devices"), fKnown, preferred);
  fEntry = found.entry;
  fDeviceTab = found.deviceTab;
  fill();
  fControls.buttonPage = fDeviceTab;
}

bool PaneModel::chooseKind(int kind) {
  const auto present = std::ranges::count(fControls.kinds, true);
  if (present < 2 || !fControls.kinds.at(static_cast<std::size_t>(kind))) {
    return false;
  }
  fControls.kind = kind;
  showEntryFor(kKinds[kind]);
  return true;
}

void PaneModel::selectTab(int tab) {
  fControls.rootTab = tab;
  updateRestorePage();
}

bool PaneModel::openTab(int tab) {
  if (!fControls.rootTabs.at(static_cast<std::size_t>(tab))) {
    return false;
  }
  selectTab(tab);
  return true;
}

bool PaneModel::clickBox(Box box) {
  if (!openTab(box == Box::kInertial ? kScrollingTab : kPointerTab)) {
    return false;
  }
  if (isEnabled(box)) {
    bool* const state = stateOf(box);
    *state = !*state;
    changed(box == Box::kAccelerates || box == Box::kSlow || box == Box::kSingle);
  }
  return true;
}

bool PaneModel::pressSlider(SliderName name, SliderKey key) {
  const bool scrolls = name == SliderName::kScrolling;
  if (name == SliderName::kAcceleration && !fControls.accelerationEnabled) {
    return false;
  }
  if (!openTab(scrolls ? kScrollingTab : kPointerTab)) {
    return false;
  }
  Slider& slider = scrolls                             ? fControls.scrolling
                   : name == SliderName::kAcceleration ? fControls.acceleration
                                                       : fControls.speed;
  if (slider.press(key)) {
    changed(false);
  }
  return true;
}

bool PaneModel::clickDirection(bool inverted) {
  if (!openTab(kScrollingTab)) {
    return false;
  }
  fControls.inverted = inverted;
  changed(false);
  return true;
}

bool PaneModel::canEdit(int button) const {
  const auto menu = fControls.menus.find(button);
  return menu != fControls.menus.end() && menu->second.enabled;
}

bool PaneModel::chooseMenu(int button, int tag) {
  if (!canEdit(button)) {
    return false;
  }
  selectTab(kButtonsTab);
  fControls.menus.at(button).tag = tag;
  changed(true);
  return true;
}

Json& PaneModel::editedAction(int button) {
  selectTab(kButtonsTab);
  return entry().at("buttons").at(buttonName(button));
}

void PaneModel::endEditing(bool confirmed) {
  fill();
  if (confirmed) {
    save();
  }
}

bool PaneModel::restoreDefaults() {
  if (fDeviceTab == kNoDevice) {
    return false;
  }
  selectTab(kButtonsTab);
  for (const Json& own : fFactory.at("devices")) {
    const auto agrees = [&](const char* key) { return lowBitsOf(own, key) == lowBitsOf(entry(), key); };
    if (agrees("device vendor id") && agrees("device product id") && agrees("device version min") &&
        agrees("device version max")) {
      entry() = own;
      save();
      fill();
      return true;
    }
  }
  return true;
}

bool PaneModel::canEditParameters() const {
  return fHasParameterButton && fControls.rootTabs[kScrollingTab];
}

void PaneModel::storeParameters(const Json& parameters) {
  entry()["param"] = parameters;
  save();
}

void PaneModel::changed(bool refill) {
  read();
  if (refill) {
    fill();
  }
  save();
}

void PaneModel::save() {
  fFile = fDocument;
  fMessages.emplace_back("VXUp");
}

std::vector<std::string> PaneModel::takeMessages() {
  return std::exchange(fMessages, {});
}

bool PaneModel::takeWarning() {
  return std::exchange(fWarned, false);
}

}  // namespace veltrix::model
