#include <algorithm>

#include "tests/ui/model/pane_model.h"

namespace veltrix::model {
namespace {

constexpr std::array<int, 4> kKeyBits = {0x0100, 0x0200, 0x0800, 0x1000};
constexpr int kWheel = 12;
constexpr int kSlowestScrolling = 1;
constexpr int kFastestScrolling = 20;

void show(KeyRow& row, const Json& options, const char* on, const char* mask) {
  row.on = row.keysEnabled = boolOf(options, on);
  for (std::size_t i = 0; i < kKeyBits.size(); ++i) {
    row.keys.at(i) = (intOf(options, mask) & kKeyBits.at(i)) != 0;
  }
}

void take(const KeyRow& row, Json& options, const char* on, const char* mask) {
  int sum = 0;
  for (std::size_t i = 0; i < kKeyBits.size(); ++i) {
    sum += row.keys.at(i) ? kKeyBits.at(i) : 0;
  }
  options[on] = row.on;
  options[mask] = sum;
}

}  // namespace

void PaneModel::fill() {
  fillMenus();
  showTab(kPointerTab, fDeviceTab != kNoDevice);
  fillPointer();
  fillTabs();
  fillScrolling();
  updateRestorePage();
}

void PaneModel::fillMenus() {
  fControls.menus.clear();
  for (const int button : buttonsOf(fDeviceTab)) {
    fControls.menus[button] = showMenu(entry(), button, fMenuTags, fCatalogue, fDocument.at("snippets"));
  }
}

void PaneModel::fillPointer() {
  const Json& options = entry().at("options");
  fControls.speed = {.most = 100, .stops = speedStops(), .page = 10, .mirrored = true};
  fControls.speed.show(positionOfSpeed(intOf(options, "speed")));
  fControls.accelerates = fControls.accelerationEnabled = boolOf(options, "accelerate");
  const double acceleration = realOf(options, "acceleration");
  const std::vector<int> stops = accelerationStops(acceleration);
  fControls.acceleration = {.least = stops.front(), .most = stops.back(), .stops = stops, .page = 10};
  fControls.acceleration.show(positionOfAcceleration(acceleration));
  fControls.jump = boolOf(options, "jump") && fAccess;
  show(fControls.slow, options, "slow", "slow keys");
  show(fControls.single, options, "single", "single keys");
}

void PaneModel::fillTabs() {
  const bool onScrolling = fControls.rootTab == kScrollingTab;
  showTab(kScrollingTab, fDeviceTab != kNoDevice && fDeviceTab != kWithoutWheel);
  if (onScrolling && fDeviceTab == kWithoutWheel) {
    fControls.rootTab = kButtonsTab;
  }
}

// A person who looks at a tab that goes finds the one before it.
void PaneModel::showTab(int tab, bool shown) {
  fControls.rootTabs.at(static_cast<std::size_t>(tab)) = shown;
  while (!fControls.rootTabs.at(static_cast<std::size_t>(fControls.rootTab))) {
    --fControls.rootTab;
  }
}

void PaneModel::fillScrolling() {
  const Json& options = entry().at("options");
  const int amount = intOf(actionOf(entry(), kWheel), "cnt");
  fControls.scrolling = {};
  fControls.scrolling.least = std::min(amount, kSlowestScrolling);
  fControls.scrolling.most = std::max(amount, kFastestScrolling);
  fControls.scrolling.page = 4;
  fControls.scrolling.show(amount);
  fControls.inertial = boolOf(options, "inertial scroll");
  fControls.inverted = boolOf(options, "invert wheel");
  fControls.directionPage = fDeviceTab == 3 ? 1 : fDeviceTab == 6 ? 2 : fDeviceTab == 7 ? 3 : 0;
}

void PaneModel::updateRestorePage() {
  if (fDeviceTab == kNoDevice) {
    fControls.restorePage = 0;
  } else {
    fControls.restorePage = fControls.rootTab == kHelpTab ? 2 : 1;
  }
}

void PaneModel::read() {
  entry()["driver enabled"] = true;
  readMenus();
  Json& options = entry().at("options");
  options["speed"] = speedOfPosition(fControls.speed.position);
  options["accelerate"] = fControls.accelerates;
  options["acceleration"] = accelerationOfPosition(fControls.acceleration.position);
  options["jump"] = readJump();
  take(fControls.slow, options, "slow", "slow keys");
  take(fControls.single, options, "single", "single keys");
  Json& wheel = entry().at("buttons").at(buttonName(kWheel));
  wheel["cmd"] = 20;
  wheel["cnt"] = fControls.scrolling.position;
  options["inertial scroll"] = fControls.inertial;
  options["invert wheel"] = fControls.inverted;
}

void PaneModel::readMenus() {
  for (const auto& [button, menu] : fControls.menus) {
    if (hasAction(entry(), button)) {
      takeMenu(entry()["buttons"][buttonName(button)], menu.tag);
    }
  }
}

bool PaneModel::readJump() {
  if (fControls.jump && !fAccess && !boolOf(entry().at("options"), "jump")) {
    fWarned = true;
    fControls.jump = false;
  }
  return fControls.jump;
}

bool* PaneModel::stateOf(Box box) {
  const auto index = static_cast<std::size_t>(box);
  switch (box) {
    case Box::kAccelerates:
      return &fControls.accelerates;
    case Box::kJump:
      return &fControls.jump;
    case Box::kSlow:
      return &fControls.slow.on;
    case Box::kSingle:
      return &fControls.single.on;
    case Box::kInertial:
      return &fControls.inertial;
    default:
      return box < Box::kSingle
                 ? &fControls.slow.keys.at(index - static_cast<std::size_t>(Box::kSlowCommand))
                 : &fControls.single.keys.at(index - static_cast<std::size_t>(Box::kSingleCommand));
  }
}

bool PaneModel::isEnabled(Box box) const {
  if (box >= Box::kSlowCommand && box <= Box::kSlowControl) {
    return fControls.slow.keysEnabled;
  }
  if (box >= Box::kSingleCommand && box <= Box::kSingleControl) {
    return fControls.single.keysEnabled;
  }
  return true;
}

}  // namespace veltrix::model
