#include "host/settings_window.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QTabBar>
#include <QTest>

#include "platform/application_service.h"
#include "tests/support/pane_fixture.h"

namespace veltrix::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class SettingsWindowTest : public PaneTest {
 protected:
  void openWindow() {
    helperProcess = -600;
    window = std::make_unique<SettingsWindow>(Bundle(home / "bundle"), makeServices());
    log.clear();
    window->open();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
  }

  std::unique_ptr<SettingsWindow> window;
};

TEST_F(SettingsWindowTest, CallsTheOperationsOfThePaneInTheirOrder) {
  openWindow();
  const std::string helper = home / "bundle/VeltrixHelper.app";
  EXPECT_THAT(log, ElementsAre("launch " + helper, "login " + helper, "poll", "VXR1"));
}

TEST_F(SettingsWindowTest, LeavesThePaneOnce) {
  openWindow();
  window->close();
  log.clear();
  window->leave();
  window->leave();
  EXPECT_THAT(log, ElementsAre("VXUp", "VXR0"));
}

TEST_F(SettingsWindowTest, AWindowThatWasNeverOpenHasNothingToLeave) {
  window = std::make_unique<SettingsWindow>(Bundle(home / "bundle"), makeServices());
  log.clear();
  window->leave();
  EXPECT_THAT(log, IsEmpty());
}

TEST_F(SettingsWindowTest, TellsThePaneWhenTheUserTurnsToAnotherProgram) {
  openWindow();
  log.clear();
  emit qGuiApp->applicationStateChanged(Qt::ApplicationInactive);
  EXPECT_THAT(log, ElementsAre("VXUp"));
}

TEST_F(SettingsWindowTest, TheKeysBeginAtTheTabs) {
  openWindow();
  EXPECT_NE(qobject_cast<QTabBar*>(QApplication::focusWidget()), nullptr);
}

TEST_F(SettingsWindowTest, TakesItsIconAfterTheFirstPaint) {
  helperProcess = -600;
  window = std::make_unique<SettingsWindow>(Bundle(home / "bundle"), makeServices());
  window->open();
  EXPECT_TRUE(window->windowIcon().isNull());
  EXPECT_TRUE(QTest::qWaitFor([this] { return !window->windowIcon().isNull(); }));
}

TEST_F(SettingsWindowTest, ComesBackFromTheTaskBarWhenItIsAskedFor) {
  openWindow();
  window->showMinimized();
  window->raiseFor({"a token", ""});
  EXPECT_FALSE(window->isMinimized());
  EXPECT_TRUE(window->isVisible());
  qunsetenv("XDG_ACTIVATION_TOKEN");
}

}  // namespace
}  // namespace veltrix::testing
