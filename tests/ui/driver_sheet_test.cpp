// What the pane shows of the driver: the line and the button on the help page, the footer, the sheet.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QTest>
#include <thread>

#include "tests/support/pane_fixture.h"

namespace veltrix::testing {
namespace {

class DriverSheetTest : public PaneTest {
 protected:
  static DriverStatus statusOf(const std::string& state) {
    DriverStatus status;
    status.helperRuns = true;
    status.state = state;
    return status;
  }
  // As it arrives: on another thread.
  void tell(const DriverStatus& status) {
    std::thread([&] { driverStatusConsumer(status); }).join();
    QApplication::processEvents();
  }
  QString textOf(const char* name) const { return find<QLabel>(name)->text(); }
};

TEST_F(DriverSheetTest, PromisesNothingBeforeTheHelperHasToldOfTheDriver) {
  openPane();
  EXPECT_EQ(textOf("outHelpTextDriver"), "The driver has not answered yet.");
  EXPECT_EQ(textOf("labelAtOnce"), "Every change is saved at once.");
}

TEST_F(DriverSheetTest, FollowsTheDriver) {
  openPane();
  tell(statusOf("connected"));
  EXPECT_EQ(textOf("outHelpTextDriver"), "The driver works: your trackballs do what you set here.");
  EXPECT_EQ(textOf("labelAtOnce"), "Every change takes effect at once.");
  tell(statusOf("not-installed"));
  EXPECT_EQ(textOf("outHelpTextDriver"),
            "The driver is not at work. Your trackballs are ordinary mice for now.");
  EXPECT_EQ(textOf("labelAtOnce"),
            "Every change is saved at once and takes effect as soon as the driver works.");
}

TEST_F(DriverSheetTest, OpensBesideTheConnectedTrackballs) {
  openPane();
  DriverStatus status = statusOf("connected");
  status.version = "1.2.3";
  status.devices.push_back(
      {.vendor = 0xA1D0, .product = 0x1020, .version = 0x0102, .condition = "busy", .error = 16});
  tell(status);
  openRootTab(4);
  bool ran = false;
  whenDialogRuns([&](QDialog* dialog) {
    ran = true;
    EXPECT_EQ(dialog->windowModality(), Qt::WindowModal);
    EXPECT_EQ(dialog->findChild<QLabel*>("outDriverTextState")->text(), "The driver works, version 1.2.3.");
    const auto* devices = dialog->findChild<QLabel*>("outDriverTextDevices");
    EXPECT_TRUE(devices->isVisible());
    EXPECT_EQ(
        devices->text(),
        QString::fromUtf8("Crest Pointer™ Rev. 1.02: another program has taken it; the driver tries again"));
    QTest::mouseClick(dialog->findChild<QAbstractButton*>("buttonDriverOK"), Qt::LeftButton);
  });
  click("buttonDriver");
  EXPECT_TRUE(ran);
}

TEST_F(DriverSheetTest, ShowsWhatChangesWhileItIsOpen) {
  openPane();
  tell(statusOf("not-running"));
  openRootTab(4);
  QString text;
  whenDialogRuns([&](QDialog* dialog) {
    EXPECT_FALSE(dialog->findChild<QLabel*>("outDriverTextDevices")->isVisible());
    tell(statusOf("other-user"));
    text = dialog->findChild<QLabel*>("outDriverTextState")->text();
    QTest::keyClick(dialog, Qt::Key_Escape);
  });
  click("buttonDriver");
  EXPECT_TRUE(text.startsWith("The driver serves whoever is at the screen"));
}

TEST_F(DriverSheetTest, BeginsAtItsButtonAndIsLeftByEscapeFromEverywhere) {
  openPane();
  openRootTab(4);
  for (const char* place : {"buttonDriverOK", "outDriverTextState"}) {
    bool ran = false;
    whenDialogRuns([&](QDialog* dialog) {
      ran = true;
      EXPECT_EQ(dialog->focusWidget(), dialog->findChild<QWidget*>("buttonDriverOK"));
      dialog->findChild<QWidget*>(place)->setFocus();
      QTest::keyClick(dialog->findChild<QWidget*>(place), Qt::Key_Escape);
      EXPECT_FALSE(dialog->isVisible());
      dialog->reject();
    });
    click("buttonDriver");
    EXPECT_TRUE(ran);
  }
}

TEST_F(DriverSheetTest, ButtonIsReachedByTheKeyboardAndSaysWhatItIsAbout) {
  openPane();
  tell(statusOf("connected"));
  openRootTab(4);
  find("outHelpTextDevices")->setFocus();
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
  EXPECT_TRUE(find("buttonDriver")->hasFocus());
  EXPECT_EQ(find("buttonDriver")->accessibleDescription(), textOf("outHelpTextDriver"));
}

TEST_F(DriverSheetTest, NobodyIsToldAfterTheEndOfThePane) {
  openPane();
  EXPECT_TRUE(driverStatusConsumer);
  pane.reset();
  EXPECT_FALSE(driverStatusConsumer);
}

}  // namespace
}  // namespace veltrix::testing
