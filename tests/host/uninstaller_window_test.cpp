#include "host/uninstaller_window.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QCheckBox>
#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <future>
#include <optional>

namespace veltrix {
namespace {

class UninstallerWindowTest : public ::testing::Test {
 protected:
  void open() {
    UninstallPlan plan;
    plan.settingsPath = "/nonexistent/settings.plist";
    window =
        std::make_unique<UninstallerWindow>(Bundle("/nonexistent"), plan, [this](const UninstallPlan& asked) {
          askedToRemoveSettings = asked.removeSettings;
          mayEnd.get_future().wait();
          return outcomes;
        });
    window->show();
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
  }

  template <typename Widget = QPushButton>
  Widget* find(const char* name) const {
    auto* widget = window->findChild<Widget*>(name);
    EXPECT_NE(widget, nullptr) << name;
    return widget;
  }

  void click(const char* name) const {
    QTest::mouseClick(find<QAbstractButton>(name), Qt::LeftButton, {}, {8, 8});
  }

  // Removes, and waits for the end of it.
  void remove() {
    mayEnd.set_value();
    click("buttonRemove");
    ASSERT_TRUE(QTest::qWaitFor([this] { return window->findChild<QLabel*>("labelOutcome") != nullptr; }));
  }

  std::vector<UninstallOutcome> outcomes = {{UninstallStep::kWindow, 1, ""},
                                            {UninstallStep::kHelper, 1, ""},
                                            {UninstallStep::kLoginItem, 0, ""},
                                            {UninstallStep::kSettings, 0, ""}};
  std::promise<void> mayEnd;
  std::optional<bool> askedToRemoveSettings;
  std::unique_ptr<UninstallerWindow> window;
};

TEST_F(UninstallerWindowTest, KeepsTheSettingsUnlessTheBoxIsTicked) {
  open();
  EXPECT_FALSE(find<QCheckBox>("boxRemoveSettings")->isChecked());
  remove();
  EXPECT_EQ(askedToRemoveSettings, false);
}

TEST_F(UninstallerWindowTest, RemovesTheSettingsWhenTheBoxIsTicked) {
  open();
  click("boxRemoveSettings");
  remove();
  EXPECT_EQ(askedToRemoveSettings, true);
}

TEST_F(UninstallerWindowTest, CancelEscapeAndReturnRemoveNothing) {
  open();
  click("buttonCancel");
  EXPECT_FALSE(window->isVisible());
  for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_Return}) {
    open();
    QTest::keyClick(window->focusWidget(), key);
    EXPECT_FALSE(window->isVisible());
    EXPECT_EQ(window->result(), QDialog::Rejected);
  }
  EXPECT_EQ(askedToRemoveSettings, std::nullopt);
}

TEST_F(UninstallerWindowTest, TellsWhatWasDoneAndHowToRemoveTheRest) {
  open();
  remove();
  EXPECT_EQ(find<QLabel>("labelOutcome")->text(),
            "The settings window is closed.\nThe helper is stopped.\nThe helper did not start with your "
            "session.\nYou had no settings.");
  EXPECT_EQ(find<QLineEdit>("fieldCommand")->text(), kPackageRemoval);
  // Nothing is cut off.
  for (const QLabel* label : window->findChildren<QLabel*>()) {
    EXPECT_GE(label->height(), label->heightForWidth(label->width())) << label->text().toStdString();
  }
  click("buttonCopy");
  EXPECT_EQ(QGuiApplication::clipboard()->text(), kPackageRemoval);
  QTest::keyClick(window->focusWidget(), Qt::Key_Return);
  EXPECT_EQ(window->result(), QDialog::Accepted);
  EXPECT_FALSE(window->isVisible());
}

TEST_F(UninstallerWindowTest, SaysWhenSomethingCouldNotBeDone) {
  outcomes[1] = {UninstallStep::kHelper, 0, "it hangs"};
  open();
  remove();
  EXPECT_TRUE(find<QLabel>("labelOutcome")->text().contains("The helper does not stop: it hangs."));
  click("buttonClose");
  EXPECT_EQ(window->result(), QDialog::Rejected);
}

TEST_F(UninstallerWindowTest, StaysOpenAndAliveWhileItIsAtWork) {
  open();
  click("buttonRemove");
  EXPECT_FALSE(find("buttonRemove")->isEnabled());
  EXPECT_FALSE(find("buttonCancel")->isEnabled());
  QTest::keyClick(window.get(), Qt::Key_Escape);
  window->close();
  EXPECT_TRUE(window->isVisible());
  mayEnd.set_value();
  ASSERT_TRUE(QTest::qWaitFor([this] { return window->findChild<QLabel*>("labelOutcome") != nullptr; }));
  QTest::keyClick(window.get(), Qt::Key_Escape);
  EXPECT_FALSE(window->isVisible());
}

TEST_F(UninstallerWindowTest, KeysReachEverything) {
  open();
  std::vector<QString> names;
  for (int i = 0; i < 3; ++i) {
    names.push_back(window->focusWidget()->objectName());
    QTest::keyClick(window->focusWidget(), Qt::Key_Tab);
  }
  EXPECT_THAT(names, ::testing::UnorderedElementsAre("buttonCancel", "buttonRemove", "boxRemoveSettings"));
}

}  // namespace
}  // namespace veltrix
