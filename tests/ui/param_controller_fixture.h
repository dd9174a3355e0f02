#pragma once

#include <gtest/gtest.h>

#include <QDialog>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QPushButton>
#include <QSlider>
#include <QTest>
#include <QTimer>
#include <array>
#include <functional>
#include <string>
#include <vector>

#include "editor/param_controller.h"

namespace veltrix {

inline constexpr std::array kKeys = {"triggerTime", "timeDecay", "timeStop", "countDecay", "countStop"};

// A pane that does nothing but run dialogs, and a person who does `action` in them.
class SheetHost : public EditorHost {
 public:
  std::int32_t modalDialog(QDialog* window) override {
    dialog = window;
    window->setWindowModality(Qt::WindowModal);
    QTimer::singleShot(0, window, [this, window] {
      EXPECT_TRUE(QTest::qWaitForWindowActive(window));
      action();
      if (window->isVisible()) {
        window->done(0);
      }
    });
    ++dialogs;
    return window->exec();
  }
  void actModalButtonOK() override { dialog->done(1); }
  void actModalButtonCancel() override { dialog->done(0); }
  std::int32_t vtxCurDeviceTabIndex() const override { return 0; }
  std::int32_t vtxCurAssignmentTabIndex(std::int32_t /*button*/) const override { return 0; }

  std::function<void()> action = [] {};
  QDialog* dialog = nullptr;
  int dialogs = 0;
};

class ParamControllerTest : public ::testing::Test {
 protected:
  ParamControllerTest() : entry(plist::Dictionary::create()) {
    auto param = plist::Dictionary::create();
    const std::array values = {60, 110, 250, 90, 1};
    for (std::size_t row = 0; row < kKeys.size(); ++row) {
      param.set(kKeys[row], values[row]);
    }
    entry.set("param", param);
    entry.set("driver enabled", true);
  }

  // Opens the sheet for a person who does `action`.
  bool edit(std::function<void()> action) {
    host.action = std::move(action);
    return controller.editScrollParams(entry);
  }

  template <typename Widget>
  Widget* find(const std::string& name) const {
    auto* widget = host.dialog->findChild<Widget*>(QString::fromStdString(name));
    if (widget == nullptr) {
      ADD_FAILURE() << "no widget " << name;
    }
    return widget;
  }
  QSlider* slider(int row) const { return find<QSlider>("outParamSlider" + std::to_string(row)); }
  QLineEdit* field(int row) const { return find<QLineEdit>("outParamField" + std::to_string(row)); }
  std::string text(int row) const { return field(row)->text().toStdString(); }
  void press(QDialogButtonBox::StandardButton which) const {
    QTest::mouseClick(find<QDialogButtonBox>("buttonsParams")->button(which), Qt::LeftButton);
  }
  void pressOK() const { press(QDialogButtonBox::Ok); }

  // Replaces the whole text, key by key.
  void type(int row, const char* keys) const {
    field(row)->setFocus();
    field(row)->selectAll();
    QTest::keyClicks(field(row), QString::fromUtf8(keys));
  }

  plist::Dictionary param() const { return entry.dictionaryFor("param"); }
  std::vector<int> stored() const {
    std::vector<int> values;
    values.reserve(kKeys.size());
    for (const char* key : kKeys) {
      values.push_back(param().contains(key) ? param().int32For(key) : -1000);
    }
    return values;
  }

  QWidget window;
  SheetHost host;
  VeltrixParamController controller{&host, &window};
  plist::Dictionary entry;
};

}  // namespace veltrix
