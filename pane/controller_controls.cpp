#include <QAbstractButton>
#include <QScopedValueRollback>
#include <QSignalBlocker>

#include "pane/controller.h"
#include "pane/outlets.h"
#include "pane/pref_pane.h"
#include "pane/slider_positions.h"

using veltrix::ModifierKeys;
using veltrix::plist::Dictionary;

namespace {

constexpr std::int32_t kScrollCommand = 20;

void showKeys(const std::array<QAbstractButton*, 4>& buttons, bool enabled, std::uint32_t mask) {
  const ModifierKeys keys = veltrix::modifierKeysFromMask(mask);
  const std::array<bool, 4> on = {keys.command, keys.shift, keys.option, keys.control};
  for (std::size_t i = 0; i < buttons.size(); ++i) {
    buttons.at(i)->setEnabled(enabled);
    buttons.at(i)->setChecked(on.at(i));
  }
}

std::uint32_t maskOf(const std::array<QAbstractButton*, 4>& buttons) {
  return veltrix::maskFromModifierKeys(
      {buttons[0]->isChecked(), buttons[1]->isChecked(), buttons[2]->isChecked(), buttons[3]->isChecked()});
}

}  // namespace

// Order matters where tabs come and go: what the user looks at is noted before the scrolling tab is touched.
void VeltrixController::vtxGetUIFromSettings() {
  fillButtonMenus();
  const Dictionary options = fCurSettingsDict.dictionaryFor("options");
  vtxShowHideTab(veltrix::kPointerRootTab, veltrix::pointerTabVisible(fCurDeviceTab));
  fillPointerControls(options);
  fillScrollingTab();
  fillScrollingControls(options);
  updateReadouts();
  vtxUpdateRestoreButton();
}

void VeltrixController::fillPointerControls(const Dictionary& options) {
  const auto& pointer = fOutlets->pointer;
  pointer.outPointerSliderSpeed->showPosition(vtxDPIToSpeedSlider(options.int32For("speed")));

  const bool accelerates = options.boolFor("accelerate");
  const std::int32_t position = veltrix::accelerationToPosition(options.realFor("acceleration"));
  pointer.outPointerBoxAccel->setChecked(accelerates);
  pointer.outPointerSliderAccel->setEnabled(accelerates);
  pointer.outPointerSliderAccel->setDetents(
      veltrix::steadyAccelerationPositions(veltrix::largestAccelerationPosition(position)));
  pointer.outPointerSliderAccel->showPosition(position);

  pointer.outPointerBoxJump->setChecked(options.boolFor("jump") && helperHasAccess());

  const bool slow = options.boolFor("slow");
  pointer.outPointerBoxSlow->setChecked(slow);
  showKeys(slowKeyButtons(), slow, options.uint32For("slow keys"));
  const bool single = options.boolFor("single");
  pointer.outPointerBoxSingleAxis->setChecked(single);
  showKeys(axisKeyButtons(), single, options.uint32For("single keys"));
}

void VeltrixController::fillScrollingTab() {
  QTabWidget* const tabs = fOutlets->main.outMainTabsRoot;
  const QWidget* const selected = tabs->currentWidget();
  const int identifier = selected != nullptr ? selected->property("identifier").toInt() : 0;
  vtxShowHideTab(veltrix::kScrollingRootTab, veltrix::scrollingTabVisible(fCurDeviceTab));
  if (veltrix::leavesSelectedTab(fCurDeviceTab, identifier)) {
    tabs->setCurrentIndex(0);
  }
}

void VeltrixController::fillScrollingControls(const Dictionary& options) {
  const auto& scrolling = fOutlets->scrolling;
  const std::int32_t amount = wheelAction().int32For("cnt");
  const veltrix::PositionRange range = veltrix::scrollSpeedRange(amount);
  {
    const QSignalBlocker quiet(scrolling.outScrollSliderSpeed);
    scrolling.outScrollSliderSpeed->setRange(range.smallest, range.largest);
    scrolling.outScrollSliderSpeed->setTickInterval(veltrix::tickDistance(range));
    scrolling.outScrollSliderSpeed->setValue(amount);
  }
  scrolling.outScrollBoxInertial->setChecked(options.boolFor("inertial scroll"));
  scrolling.outScrollMatrixDirection->selectColumn(options.boolFor("invert wheel") ? 0 : 1);
  scrolling.outScrollTabsDirection->setCurrentIndex(veltrix::scrollDirectionPage(fCurDeviceTab));
}

// The warning sheet runs from within, and the program may lose the focus meanwhile; the outer call then
// finishes alone.
void VeltrixController::vtxGetSettingsFromUI() {
  if (fReadsControls) {
    return;
  }
  const QScopedValueRollback<bool> reading(fReadsControls, true);
  fCurSettingsDict.set("driver enabled", true);
  readButtonMenus();
  const Dictionary options = fCurSettingsDict.dictionaryFor("options");
  readPointerControls(options);
  readScrollingControls(options);
}

void VeltrixController::readPointerControls(Dictionary options) {
  const auto& pointer = fOutlets->pointer;
  const auto speedPosition = static_cast<std::uint32_t>(pointer.outPointerSliderSpeed->value());
  options.set("speed", vtxSpeedSliderToDPI(speedPosition));
  options.set("accelerate", pointer.outPointerBoxAccel->isChecked());
  options.set("acceleration", veltrix::positionToAcceleration(pointer.outPointerSliderAccel->value()));
  options.set("jump", readJump(options));
  options.set("slow", pointer.outPointerBoxSlow->isChecked());
  options.set("slow keys", maskOf(slowKeyButtons()));
  options.set("single", pointer.outPointerBoxSingleAxis->isChecked());
  options.set("single keys", maskOf(axisKeyButtons()));
}

void VeltrixController::readScrollingControls(Dictionary options) {
  const auto& scrolling = fOutlets->scrolling;
  Dictionary wheel = wheelAction();
  wheel.set("cmd", kScrollCommand);
  wheel.set("cnt", scrolling.outScrollSliderSpeed->value());
  options.set("inertial scroll", scrolling.outScrollBoxInertial->isChecked());
  options.set("invert wheel", scrolling.outScrollMatrixDirection->selectedColumn() == 0);
}

// Jumping needs a permission that only the helper can have; whoever turns it on without is told so.
bool VeltrixController::readJump(const Dictionary& options) {
  QCheckBox* const box = fOutlets->pointer.outPointerBoxJump;
  if (!box->isChecked()) {
    return false;
  }
  if (!options.boolFor("jump") && !helperHasAccess()) {
    modalDialog(fOutlets->outWindowAccessibilityWarning);
    box->setChecked(false);
    return false;
  }
  return true;
}

void VeltrixController::vtxUpdateRestoreButton() {
  const QTabWidget* const tabs = fOutlets->main.outMainTabsRoot;
  fOutlets->main.outMainTabsDefaultsButton->setCurrentIndex(
      veltrix::restoreAreaPage(fCurDeviceTab, tabs->currentIndex(), tabs->count()));
}

void VeltrixController::updateReadouts() {
  showSpeed();
  showAcceleration();
  showScrollAmount();
}

void VeltrixController::showSpeed() {
  const auto& pointer = fOutlets->pointer;
  const auto position = static_cast<std::uint32_t>(pointer.outPointerSliderSpeed->value());
  const QString text = fPane->vtxLocString("%1 dpi").arg(vtxSpeedSliderToDPI(position));
  pointer.labelSpeedDpi->setText(text);
  pointer.outPointerSliderSpeed->setAccessibleDescription(text);
}

void VeltrixController::showAcceleration() {
  const auto& pointer = fOutlets->pointer;
  pointer.curveAccel->setFactor(veltrix::positionToAcceleration(pointer.outPointerSliderAccel->value()));
  pointer.curveAccel->setEnabled(pointer.outPointerSliderAccel->isEnabled());
}

void VeltrixController::showScrollAmount() {
  const auto& scrolling = fOutlets->scrolling;
  const QString text = fPane->vtxLocString("%1 per step").arg(scrolling.outScrollSliderSpeed->value());
  scrolling.labelScrollAmount->setText(text);
  scrolling.outScrollSliderSpeed->setAccessibleDescription(text);
}

std::array<QAbstractButton*, 4> VeltrixController::slowKeyButtons() const {
  const auto& pointer = fOutlets->pointer;
  return {pointer.outPointerButtonSlowCmd, pointer.outPointerButtonSlowShift, pointer.outPointerButtonSlowOpt,
          pointer.outPointerButtonSlowCtrl};
}

std::array<QAbstractButton*, 4> VeltrixController::axisKeyButtons() const {
  const auto& pointer = fOutlets->pointer;
  return {pointer.outPointerButtonAxisCmd, pointer.outPointerButtonAxisShift, pointer.outPointerButtonAxisOpt,
          pointer.outPointerButtonAxisCtrl};
}

bool VeltrixController::helperHasAccess() const {
  return (fPane->vtxGetDeviceList()->helperState & kVeltrixHelperStateAccessibility) != 0;
}

// The wheel or ring counts as button 12.
Dictionary VeltrixController::wheelAction() const {
  return fCurSettingsDict.dictionaryFor("buttons").dictionaryFor("12");
}
