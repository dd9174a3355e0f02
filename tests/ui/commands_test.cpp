// Commands of the pane and the dialogs that it runs.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDialog>
#include <QTest>
#include <QTimer>

#include "tests/support/pane_fixture.h"

namespace veltrix::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class CommandsTest : public PaneTest {
 protected:
  QDialog* warning() const { return find<QDialog>("outWindowAccessibilityWarning"); }

  std::int32_t runWarning(std::function<void(QDialog*)> action) const {
    whenDialogRuns(std::move(action));
    return gVeltrixController->modalDialog(warning());
  }
};

TEST_F(CommandsTest, WithoutAWindowThereIsNoDialog) {
  openPane();
  EXPECT_EQ(gVeltrixController->modalDialog(nullptr), -1000);
  EXPECT_FALSE(gVeltrixController->dialogRuns());
}

TEST_F(CommandsTest, OkIsOneAndCancelIsZero) {
  openPane();
  EXPECT_EQ(runWarning([](QDialog*) { gVeltrixController->actModalButtonOK(); }), 1);
  EXPECT_EQ(runWarning([](QDialog*) { gVeltrixController->actModalButtonCancel(); }), 0);
  EXPECT_EQ(runWarning([](QDialog* dialog) { QTest::keyClick(dialog, Qt::Key_Return); }), 1);
  EXPECT_EQ(runWarning([](QDialog* dialog) { QTest::keyClick(dialog, Qt::Key_Escape); }), 0);
  EXPECT_EQ(runWarning([](QDialog* dialog) { dialog->close(); }), 0);
}

TEST_F(CommandsTest, ADialogIsASheetOfThePanesWindowAndGoneAfterwards) {
  openPane();
  Qt::WindowModality modality = Qt::NonModal;
  bool sheet = false;
  runWarning([&](QDialog* dialog) {
    modality = dialog->windowModality();
    sheet = dialog->parentWidget()->window() == pane->mainView()->window();
    dialog->accept();
  });
  EXPECT_EQ(modality, Qt::WindowModal);
  EXPECT_TRUE(sheet);
  EXPECT_FALSE(warning()->isVisible());
}

TEST_F(CommandsTest, ModalButtonsWithoutADialogDoNothing) {
  openPane();
  gVeltrixController->actModalButtonOK();
  gVeltrixController->actModalButtonCancel();
  EXPECT_FALSE(warning()->isVisible());
}

TEST_F(CommandsTest, ThePollRestsWhileADialogRuns) {
  openPane();
  log.clear();
  auto* timer = pane->findChild<QTimer*>("fDeviceCheckTimer");
  runWarning([&](QDialog* dialog) {
    timer->setInterval(0);
    QTest::qWait(20);
    dialog->reject();
  });
  timer->setInterval(1000);
  EXPECT_THAT(log, IsEmpty());
}

TEST_F(CommandsTest, RestoringGivesThisEntryAloneItsFactorySettings) {
  plist::Dictionary changed = makeEntry(0x1020);
  changed.dictionaryFor("options").set("slow", true);
  plist::Dictionary other = makeEntry(0x8002);
  other.dictionaryFor("options").set("slow", true);
  writeUserFile(makeDocument({changed, other}));
  plug({{0x1020, 0x0100}});
  openPane();
  log.clear();
  EXPECT_TRUE(isChecked("outPointerBoxSlow"));
  click("buttonRestoreDefaults");
  EXPECT_FALSE(isChecked("outPointerBoxSlow"));
  EXPECT_FALSE(userOptions(0x1020).boolFor("slow"));
  EXPECT_TRUE(userOptions(0x8002).boolFor("slow"));
  EXPECT_THAT(log, ElementsAre("VXUp"));
}

TEST_F(CommandsTest, ARestoredEntryGoesOnBeingEdited) {
  plug({{0x1020, 0x0100}});
  openPane();
  click("buttonRestoreDefaults");
  click("outPointerBoxSlow");
  EXPECT_TRUE(userOptions(0x1020).boolFor("slow"));
  click("buttonRestoreDefaults");
  EXPECT_FALSE(userOptions(0x1020).boolFor("slow"));
}

TEST_F(CommandsTest, RestoringComparesTheLowBitsOnly) {
  writeDefaults(makeDocument({makeEntry(0x2041, 0, 0x0107)}));
  plist::Dictionary changed = makeEntry(0x2041, 0, 0x0107);
  changed.set("device version max", 0x10107);
  changed.dictionaryFor("options").set("slow", true);
  writeUserFile(makeDocument({changed}));
  plug({{0x2041, 0x0106}});
  openPane();
  click("buttonRestoreDefaults");
  EXPECT_FALSE(userOptions(0x2041).boolFor("slow"));
}

TEST_F(CommandsTest, RestoringWithoutFactorySettingsChangesNothing) {
  plist::Dictionary changed = makeEntry(0x1020);
  changed.dictionaryFor("options").set("slow", true);
  writeUserFile(makeDocument({changed}));
  plug({{0x1020, 0x0100}});
  openPane();
  log.clear();
  for (const char* text : {"", "no property list", "<plist><dict/></plist>"}) {
    writeFile(home / "bundle/DefaultSettings.plist", text);
    gVeltrixController->actButtonRestoreDefaults();
  }
  std::filesystem::remove(home / "bundle/DefaultSettings.plist");
  gVeltrixController->actButtonRestoreDefaults();
  EXPECT_TRUE(isChecked("outPointerBoxSlow"));
  EXPECT_THAT(log, IsEmpty());
}

TEST_F(CommandsTest, RestoringWithoutAFactoryEntryChangesNothing) {
  plist::Dictionary changed = makeEntry(0x1020, 0x0050, 0);
  changed.dictionaryFor("options").set("slow", true);
  writeUserFile(makeDocument({changed}));
  plug({{0x1020, 0x0100}});
  openPane();
  log.clear();
  click("buttonRestoreDefaults");
  EXPECT_TRUE(isChecked("outPointerBoxSlow"));
  EXPECT_THAT(log, IsEmpty());
}

}  // namespace
}  // namespace veltrix::testing
