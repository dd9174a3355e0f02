#include "tests/ui/model/hands.h"

#include <QApplication>
#include <QDialog>
#include <QTest>
#include <QTimer>
#include <algorithm>
#include <utility>

#include "pane/cell_matrix.h"

namespace veltrix::model {
namespace {

constexpr const char* kBoxNames[kBoxes] = {
    "outPointerBoxAccel",        "outPointerBoxJump",         "outPointerBoxSlow",
    "outPointerButtonSlowCmd",   "outPointerButtonSlowShift", "outPointerButtonSlowOpt",
    "outPointerButtonSlowCtrl",  "outPointerBoxSingleAxis",   "outPointerButtonAxisCmd",
    "outPointerButtonAxisShift", "outPointerButtonAxisOpt",   "outPointerButtonAxisCtrl",
    "outScrollBoxInertial"};

QDialog* visibleDialog() {
  for (QWidget* widget : QApplication::topLevelWidgets()) {
    auto* dialog = qobject_cast<QDialog*>(widget);
    if (dialog != nullptr && dialog->isVisible()) {
      return dialog;
    }
  }
  return nullptr;
}

void clickMiddle(QWidget* widget) {
  QTest::mouseClick(widget, Qt::LeftButton, Qt::NoModifier, widget->rect().center());
}

}  // namespace

Hands::Hands(const Json& factory, const Json& file) {
  writeDefaults(plistOf(factory).asDictionary());
  writeUserFile(plistOf(file).asDictionary());
}

void Hands::open() {
  openPane();
}

void Hands::reopen() {
  pane->willUnselect();
  pane.reset();
  openPane();
}

void Hands::leaveAndReturn() {
  pane->willUnselect();
  pane->didSelect();
}

void Hands::resignActive() {
  emit notifications.applicationDidResignActive();
}

void Hands::plugDevices(const std::vector<Device>& devices) {
  std::vector<Plugged> plugged;
  plugged.reserve(devices.size());
  for (const Device& device : devices) {
    plugged.push_back({device.product, device.version});
  }
  plugAndPoll(plugged);
}

void Hands::clickBox(Box box) {
  click(nameOf(box));
}

void Hands::pressSlider(SliderName name, SliderKey key) {
  press(nameOf(name), keyOf(key));
}

void Hands::clickDirection(bool inverted) {
  openRootTab(kScrollingTab + 1);
  clickMiddle(find<CellMatrix>("outScrollMatrixDirection")->cell(inverted ? 0 : 1));
}

AssignmentMenu* Hands::menu(int deviceTab, int button) const {
  const std::string place =
      button < 8 ? "Button" + std::to_string(button + 1) : "Chord" + std::to_string(button - 7);
  return find<AssignmentMenu>(("outBtnMenuDev" + std::to_string(deviceTab - 1) + place).c_str());
}

void Hands::chooseMenu(int deviceTab, int button, int tag) {
  openRootTab(kButtonsTab + 1);
  choose(menu(deviceTab, button), tag);
}

void Hands::clickKind(int kind) {
  clickMiddle(find<CellMatrix>("outMainMatrixDevices")->cell(kind));
}

void Hands::clickRestore() {
  openRootTab(kButtonsTab + 1);
  clickMiddle(find("buttonRestoreDefaults"));
}

void Hands::clickParameters() {
  openRootTab(kScrollingTab + 1);
  clickMiddle(find("outScrollButtonAdvanced"));
}

Hands::Seen Hands::watching(const std::function<void()>& action,
                            const std::function<void(QDialog*)>& dialog) {
  Seen seen = Seen::kNoDialog;
  QTimer watch;
  QObject::connect(&watch, &QTimer::timeout, &watch, [&] {
    QDialog* const shown = visibleDialog();
    if (shown == nullptr) {
      return;
    }
    watch.stop();
    seen = Seen::kDialog;
    // The menu that it was opened from may still hold the focus.
    shown->activateWindow();
    EXPECT_TRUE(QTest::qWaitFor([shown] { return shown->isActiveWindow(); }));
    dialog(shown);
    if (shown->isVisible()) {
      seen = Seen::kDialogThatStayed;
      shown->reject();
    }
  });
  watch.start(0);
  action();
  return seen;
}

const char* Hands::nameOf(Box box) {
  return kBoxNames[static_cast<int>(box)];
}

const char* Hands::nameOf(SliderName slider) {
  switch (slider) {
    case SliderName::kSpeed:
      return "outPointerSliderSpeed";
    case SliderName::kAcceleration:
      return "outPointerSliderAccel";
    case SliderName::kScrolling:
      break;
  }
  return "outScrollSliderSpeed";
}

Qt::Key Hands::keyOf(SliderKey key) {
  switch (key) {
    case SliderKey::kLeft:
      return Qt::Key_Left;
    case SliderKey::kRight:
      return Qt::Key_Right;
    case SliderKey::kPageUp:
      return Qt::Key_PageUp;
    case SliderKey::kPageDown:
      return Qt::Key_PageDown;
    case SliderKey::kHome:
      return Qt::Key_Home;
    case SliderKey::kEnd:
      break;
  }
  return Qt::Key_End;
}

std::vector<std::string> Hands::takeMessages() {
  std::vector<std::string> messages;
  std::ranges::copy_if(std::exchange(log, {}), std::back_inserter(messages),
                       [](const std::string& event) { return event.starts_with("VX"); });
  return messages;
}

}  // namespace veltrix::model
