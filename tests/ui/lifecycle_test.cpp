// How the pane is loaded, shown and left.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QLabel>
#include <QPushButton>
#include <QThread>
#include <QTimer>
#include <filesystem>

#include "keyboard/keystroke_application.h"
#include "tests/support/pane_fixture.h"

namespace veltrix::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class LifecycleTest : public PaneTest {
 protected:
  QTimer* pollTimer() const { return pane->findChild<QTimer*>("fDeviceCheckTimer"); }
};

TEST_F(LifecycleTest, CreationSetsTheProcessWideReferences) {
  makePane();
  EXPECT_EQ(gVeltrixPrefPane, pane.get());
  EXPECT_EQ(gVeltrixBundle->resourcePath(), home / "bundle");
  EXPECT_NE(gVeltrixController, nullptr);
  EXPECT_EQ(pane->vtxGetDeviceList()->count, 0);
}

TEST_F(LifecycleTest, LoadingShowsTheFirstTabAndNoDevice) {
  makePane();
  EXPECT_EQ(selectedRootTab(), 1);
  EXPECT_THAT(rootTabs(), ElementsAre(1, 4));
  EXPECT_EQ(gVeltrixController->vtxCurDeviceTabIndex(), -1);
}

TEST_F(LifecycleTest, LoadingStartsAMissingHelperAndAddsTheLoginItem) {
  helperProcess = -600;
  makePane();
  log.clear();
  pane->mainViewDidLoad();
  EXPECT_THAT(log, ElementsAre("launch " + (home / "bundle/VeltrixHelper.app"),
                               "login " + (home / "bundle/VeltrixHelper.app")));
}

TEST_F(LifecycleTest, LoadingWithARunningHelperStartsNoSecondOneButChecksTheLoginItem) {
  makePane();
  log.clear();
  pane->mainViewDidLoad();
  EXPECT_THAT(log, ElementsAre("login " + (home / "bundle/VeltrixHelper.app")));
}

TEST_F(LifecycleTest, TheFirstSelectionPollsBeforeItCompletesTheLabelsAndGreetsTheHelper) {
  plug({{0x1020, 0x0102}});
  makePane();
  pane->mainViewDidLoad();
  log.clear();
  auto* version = find<QLabel>("outHelpLabelVersion");
  EXPECT_EQ(version->text(), "Version #");
  pane->didSelect();
  EXPECT_THAT(log, ElementsAre("poll", "VXR1"));
  EXPECT_EQ(version->text(), "Version 4.5.6");
  EXPECT_THAT(rootTabs(), ElementsAre(1, 2, 3, 4));
}

TEST_F(LifecycleTest, TheVersionLabelIsCompletedOnce) {
  openPane();
  pane->willUnselect();
  pane->didSelect();
  EXPECT_EQ(find<QLabel>("outHelpLabelVersion")->text(), "Version 4.5.6");
}

TEST_F(LifecycleTest, ThePollRunsEverySecondWhileSelectedOnly) {
  makePane();
  EXPECT_FALSE(pollTimer()->isActive());
  pane->mainViewDidLoad();
  pane->didSelect();
  EXPECT_TRUE(pollTimer()->isActive());
  EXPECT_FALSE(pollTimer()->isSingleShot());
  EXPECT_EQ(pollTimer()->interval(), 1000);
  pane->willUnselect();
  EXPECT_FALSE(pollTimer()->isActive());
}

TEST_F(LifecycleTest, LeavingSavesAnnouncesSaysGoodbyeAndStopsTheTimerInThisOrder) {
  plug({{0x1020, 0x0102}});
  openPane();
  log.clear();
  std::filesystem::remove_all(home / "Library");
  pane->willUnselect();
  EXPECT_THAT(log, ElementsAre("VXUp", "VXR0"));
  EXPECT_FALSE(userFile().isNull());
  EXPECT_FALSE(pollTimer()->isActive());
}

TEST_F(LifecycleTest, TheTimerStillRunsWhenTheHelperHearsGoodbye) {
  openPane();
  bool active = false;
  onMessage = [&](const std::string& message) {
    active = message == "VXR0" ? pollTimer()->isActive() : active;
  };
  pane->willUnselect();
  EXPECT_TRUE(active);
}

TEST_F(LifecycleTest, KeysAreTakenBeforeTheFirstPollAndGivenBackBehindTheTimer) {
  makePane();
  pane->mainViewDidLoad();
  log.clear();
  const auto* const application = qobject_cast<KeystrokeApplication*>(qApp);
  ASSERT_NE(application, nullptr);
  QObject context;
  QObject::connect(application, &KeystrokeApplication::captureChanged, &context,
                   [this] { log.emplace_back(pollTimer()->isActive() ? "keys while polling" : "keys"); });
  pane->didSelect();
  EXPECT_THAT(log, ElementsAre("keys", "poll", "VXR1"));
  log.clear();
  pane->willUnselect();
  EXPECT_THAT(log, ElementsAre("VXUp", "VXR0", "keys"));
}

TEST_F(LifecycleTest, AFailedSaveOnLeavingAnnouncesNothingButSaysGoodbye) {
  openPane();
  std::filesystem::remove_all(home / "Library");
  writeFile(home / "Library", "in the way");
  log.clear();
  pane->willUnselect();
  EXPECT_THAT(log, ElementsAre("VXR0"));
}

TEST_F(LifecycleTest, ThePaneCanBeShownAgain) {
  plug({{0x1020, 0x0102}});
  openPane();
  pane->willUnselect();
  log.clear();
  pane->didSelect();
  EXPECT_THAT(log, ElementsAre("poll", "VXR1"));
  EXPECT_THAT(rootTabs(), ElementsAre(1, 2, 3, 4));
}

TEST_F(LifecycleTest, ResigningActiveSavesAndAnnounces) {
  plug({{0x1020, 0x0102}});
  openPane();
  log.clear();
  emit notifications.applicationDidResignActive();
  EXPECT_THAT(log, ElementsAre("VXUp"));
}

TEST_F(LifecycleTest, BecomingKeyChangesNothing) {
  openPane();
  log.clear();
  emit notifications.windowDidBecomeKey();
  EXPECT_THAT(log, IsEmpty());
}

TEST_F(LifecycleTest, AnUnselectedPaneHearsNoNotifications) {
  openPane();
  pane->willUnselect();
  log.clear();
  emit notifications.applicationDidResignActive();
  emit notifications.windowDidBecomeKey();
  EXPECT_THAT(log, IsEmpty());
}

TEST_F(LifecycleTest, WithoutParamUiTheAdvancedButtonIsGone) {
  makePane();
  EXPECT_EQ(pane->mainView()->findChild<QPushButton*>("outScrollButtonAdvanced"), nullptr);
}

TEST_F(LifecycleTest, ParamUiThatIsFalseIsAsGoodAsNone) {
  plist::Dictionary document = makeUsualDocument();
  document.set("paramUI", false);
  writeUserFile(document);
  makePane();
  EXPECT_EQ(pane->mainView()->findChild<QPushButton*>("outScrollButtonAdvanced"), nullptr);
}

TEST_F(LifecycleTest, WithParamUiTheAdvancedButtonStays) {
  plist::Dictionary document = makeUsualDocument();
  document.set("paramUI", true);
  writeUserFile(document);
  makePane();
  EXPECT_NE(pane->mainView()->findChild<QPushButton*>("outScrollButtonAdvanced"), nullptr);
}

TEST_F(LifecycleTest, TheWarningTextFollowsTheSystemsRelease) {
  systemVersion = 0x1080;
  makePane();
  EXPECT_EQ(find<QLabel>("outAccessibilityLabelWarning")->text(), pane->vtxLocString("SNAP_WARNING_10.8"));
  systemVersion = 0x1090;
  makePane();
  EXPECT_EQ(find<QLabel>("outAccessibilityLabelWarning")->text(), pane->vtxLocString("SNAP_WARNING_10.9"));
  EXPECT_NE(pane->vtxLocString("SNAP_WARNING_10.8"), "");
}

TEST_F(LifecycleTest, AnUntranslatedKeyComesBackAsItself) {
  makePane();
  EXPECT_EQ(pane->vtxLocString("no such text"), "no such text");
}

TEST_F(LifecycleTest, WithoutAnySettingsTheControlsKeepTheirDesignedState) {
  std::filesystem::remove(home / "bundle/DefaultSettings.plist");
  makePane();
  EXPECT_THAT(rootTabs(), ElementsAre(1, 2, 3, 4));
  EXPECT_EQ(pane->mainView()->findChild<QPushButton*>("outScrollButtonAdvanced"), nullptr);
}

TEST_F(LifecycleTest, WithoutAnySettingsNothingIsSavedOrAnnounced) {
  std::filesystem::remove(home / "bundle/DefaultSettings.plist");
  plug({{0x1020, 0x0102}});
  openPane();
  log.clear();
  emit notifications.applicationDidResignActive();
  pane->willUnselect();
  EXPECT_THAT(log, ElementsAre("VXR0"));
  EXPECT_TRUE(userFile().isNull());
}

TEST_F(LifecycleTest, MissingArraysAreMadeAndKept) {
  plist::Dictionary document = makeUsualDocument();
  document.remove("snippets");
  writeDefaults(document);
  openPane();
  pane->willUnselect();
  EXPECT_FALSE(userFile().arrayFor("snippets").isNull());
}

TEST_F(LifecycleTest, ADeviceStateFromAnotherThreadIsHandedOverWithoutWaiting) {
  openPane();
  ASSERT_TRUE(deviceStateConsumer);
  log.clear();
  // The main thread is not running its loop meanwhile; a consumer that waited for it would never come back.
  QThread* const sender = QThread::create([this] { deviceStateConsumer(DeviceState{}); });
  sender->start();
  EXPECT_TRUE(sender->wait(5000));
  delete sender;
  QCoreApplication::processEvents();
  EXPECT_THAT(log, IsEmpty());
}

TEST_F(LifecycleTest, TheEndOfThePaneEndsItsDeviceStates) {
  makePane();
  EXPECT_TRUE(deviceStateConsumer);
  pane.reset();
  EXPECT_FALSE(deviceStateConsumer);
}

}  // namespace
}  // namespace veltrix::testing
