// What the pointer controls show and store.
#include "tests/ui/controls_fixture.h"

#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QTest>

#include "pane/acceleration_curve.h"

namespace veltrix::testing {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::Not;

class PointerControlsTest : public ControlsTest {};

TEST_F(PointerControlsTest, SpeedIsShownAtItsDetentWithItsDotsPerInch) {
  openWithOption("speed", 1000);
  EXPECT_EQ(position("outPointerSliderSpeed"), 20);
  EXPECT_EQ(find<QLabel>("labelSpeedDpi")->text(), "1000 dpi");
}

TEST_F(PointerControlsTest, AKeyOnTheSpeedSliderStoresTheNextSpeedAtOnce) {
  openWithOption("speed", 400);
  press("outPointerSliderSpeed", Qt::Key_Right);
  EXPECT_EQ(options().int32For("speed"), 500);
  EXPECT_EQ(find<QLabel>("labelSpeedDpi")->text(), "500 dpi");
  EXPECT_THAT(log, ElementsAre("VXUp"));
}

TEST_F(PointerControlsTest, ASpeedBetweenTwoDetentsIsStoredBackAsTheOneShown) {
  openWithOption("speed", 450);
  EXPECT_EQ(position("outPointerSliderSpeed"), 50);
  click("outScrollBoxInertial");
  EXPECT_EQ(options().int32For("speed"), 400);
}

TEST_F(PointerControlsTest, TheRightEndOfTheSpeedSliderIsTheFastest) {
  openWithOption("speed", 400);
  press("outPointerSliderSpeed", Qt::Key_End);
  EXPECT_EQ(options().int32For("speed"), 5000);
  press("outPointerSliderSpeed", Qt::Key_Home);
  EXPECT_EQ(options().int32For("speed"), 80);
}

TEST_F(PointerControlsTest, TheMouseMovesTheSpeedSlider) {
  openWithOption("speed", 400);
  openRootTab(2);
  auto* slider = find<QSlider>("outPointerSliderSpeed");
  QTest::mouseClick(slider, Qt::LeftButton, Qt::NoModifier, grooveNearRightEnd(*slider));
  EXPECT_GT(options().int32For("speed"), 400);
  EXPECT_EQ(slider->value() % 5, 0);
}

TEST_F(PointerControlsTest, AccelerationOneIsPositionFifty) {
  openWithOption("acceleration", 1.0);
  EXPECT_EQ(position("outPointerSliderAccel"), 50);
}

TEST_F(PointerControlsTest, AccelerationIsTruncated) {
  openWithOption("acceleration", 0.999);
  EXPECT_EQ(position("outPointerSliderAccel"), 49);
}

TEST_F(PointerControlsTest, AccelerationIsStoredInSinglePrecision) {
  openWithOption("acceleration", 0.72);
  EXPECT_EQ(position("outPointerSliderAccel"), 36);
  press("outPointerSliderAccel", Qt::Key_Right);
  EXPECT_EQ(position("outPointerSliderAccel"), 37);
  EXPECT_EQ(options().realFor("acceleration"), static_cast<double>(0.74F));
}

TEST_F(PointerControlsTest, AMissingAccelerationIsPositionZero) {
  openWith([](const plist::Dictionary& entry) { entry.dictionaryFor("options").remove("acceleration"); });
  EXPECT_EQ(position("outPointerSliderAccel"), 0);
}

TEST_F(PointerControlsTest, TheAccelerationSliderNeverCreeps) {
  openWithOption("acceleration", 0.08);
  const int shown = position("outPointerSliderAccel");
  for (int i = 0; i < 6; ++i) {
    click("outPointerBoxSlow");
    EXPECT_EQ(position("outPointerSliderAccel"), shown);
  }
}

TEST_F(PointerControlsTest, AnAccelerationAboveTheUsualRangeIsKept) {
  openWithOption("acceleration", 3.0);
  EXPECT_EQ(position("outPointerSliderAccel"), 150);
  click("outScrollBoxInertial");
  EXPECT_EQ(options().realFor("acceleration"), 3.0);
}

TEST_F(PointerControlsTest, AccelerationIsEnabledByItsBoxAndKeptMeanwhile) {
  openWithOption("accelerate", true);
  EXPECT_TRUE(isEnabled("outPointerSliderAccel"));
  EXPECT_TRUE(isEnabled("curveAccel"));
  click("outPointerBoxAccel");
  EXPECT_FALSE(isEnabled("outPointerSliderAccel"));
  EXPECT_FALSE(isEnabled("curveAccel"));
  EXPECT_FALSE(options().boolFor("accelerate"));
  EXPECT_EQ(options().realFor("acceleration"), 1.0);
}

TEST_F(PointerControlsTest, TheCurveFollowsTheSlider) {
  openWithOption("acceleration", 1.0);
  press("outPointerSliderAccel", Qt::Key_Right);
  EXPECT_EQ(find<AccelerationCurve>("curveAccel")->factor(), options().realFor("acceleration"));
}

TEST_F(PointerControlsTest, ShiftOptionAndControlAreShownAndStoredBackUnchanged) {
  openWith([](const plist::Dictionary& entry) {
    entry.dictionaryFor("options").set("slow", true);
    entry.dictionaryFor("options").set("slow keys", 0x1A00);
  });
  EXPECT_THAT(checkedKeys("outPointerButtonSlow"), ElementsAre(false, true, true, true));
  click("outScrollBoxInertial");
  EXPECT_EQ(options().int32For("slow keys"), 0x1A00);
}

TEST_F(PointerControlsTest, CapsLockShowsNoKeyAndIsDropped) {
  openWithOption("slow keys", 0x0400);
  EXPECT_THAT(checkedKeys("outPointerButtonSlow"), Not(Contains(true)));
  click("outScrollBoxInertial");
  EXPECT_EQ(options().int32For("slow keys"), 0);
}

TEST_F(PointerControlsTest, TheSlowKeysFollowTheirBox) {
  openWithOption("slow", false);
  EXPECT_FALSE(isEnabled("outPointerButtonSlowCmd"));
  click("outPointerBoxSlow");
  for (const char* key : {"Cmd", "Shift", "Opt", "Ctrl"}) {
    EXPECT_TRUE(isEnabled((std::string("outPointerButtonSlow") + key).c_str()));
    EXPECT_FALSE(isEnabled((std::string("outPointerButtonAxis") + key).c_str()));
  }
  EXPECT_TRUE(options().boolFor("slow"));
  click("outPointerButtonSlowCmd");
  click("outPointerButtonSlowCtrl");
  EXPECT_EQ(options().int32For("slow keys"), 0x1100);
}

TEST_F(PointerControlsTest, TheAxisKeysFollowTheirBox) {
  openWithOption("single keys", 0x0200);
  EXPECT_THAT(checkedKeys("outPointerButtonAxis"), ElementsAre(false, true, false, false));
  EXPECT_FALSE(isEnabled("outPointerButtonAxisOpt"));
  click("outPointerBoxSingleAxis");
  click("outPointerButtonAxisOpt");
  EXPECT_TRUE(options().boolFor("single"));
  EXPECT_EQ(options().int32For("single keys"), 0x0A00);
}

TEST_F(PointerControlsTest, WithAccessTheJumpBoxStoresWhatItShows) {
  grantAccess(true);
  openWithOption("jump", false);
  click("outPointerBoxJump");
  EXPECT_TRUE(isChecked("outPointerBoxJump"));
  EXPECT_TRUE(options().boolFor("jump"));
  click("outPointerBoxJump");
  EXPECT_FALSE(options().boolFor("jump"));
}

TEST_F(PointerControlsTest, OnlyTheLowestBitOfTheHelpersStateIsAccess) {
  helperDevices.helperState = 0xFFFE;
  openWithOption("jump", true);
  EXPECT_FALSE(isChecked("outPointerBoxJump"));
  helperDevices.helperState = 0x0001;
  openWithOption("jump", true);
  EXPECT_TRUE(isChecked("outPointerBoxJump"));
}

TEST_F(PointerControlsTest, TurningJumpOnWithoutAccessWarnsAndLeavesItOff) {
  openWithOption("jump", false);
  QString warning;
  whenDialogRuns([&](QDialog* dialog) {
    warning = dialog->objectName();
    QTest::mouseClick(dialog->findChild<QAbstractButton*>("buttonAccessibilityOK"), Qt::LeftButton);
  });
  click("outPointerBoxJump");
  EXPECT_EQ(warning, "outWindowAccessibilityWarning");
  EXPECT_FALSE(isChecked("outPointerBoxJump"));
  EXPECT_FALSE(options().boolFor("jump"));
  EXPECT_THAT(log, ElementsAre("VXUp"));
}

TEST_F(PointerControlsTest, EscapingTheWarningLeavesJumpOffToo) {
  openWithOption("jump", false);
  whenDialogRuns([](QDialog* dialog) { QTest::keyClick(dialog, Qt::Key_Escape); });
  click("outPointerBoxJump");
  EXPECT_FALSE(isChecked("outPointerBoxJump"));
  EXPECT_FALSE(options().boolFor("jump"));
}

TEST_F(PointerControlsTest, TurningJumpOnWhileItIsStoredAlreadyNeverWarns) {
  openWithOption("jump", true);
  EXPECT_FALSE(isChecked("outPointerBoxJump"));
  bool warned = false;
  whenDialogRuns([&](QDialog* dialog) {
    warned = true;
    dialog->reject();
  });
  click("outPointerBoxJump");
  QApplication::processEvents();
  EXPECT_FALSE(warned);
  EXPECT_TRUE(isChecked("outPointerBoxJump"));
  EXPECT_TRUE(options().boolFor("jump"));
}

TEST_F(PointerControlsTest, AStoredJumpWithoutAccessIsShownOffAndStoredOff) {
  openWithOption("jump", true);
  EXPECT_FALSE(isChecked("outPointerBoxJump"));
  click("outScrollBoxInertial");
  EXPECT_FALSE(options().boolFor("jump"));
}

TEST_F(PointerControlsTest, LosingTheFocusUnderTheWarningRunsNoSecondOne) {
  openWithOption("jump", false);
  int seen = 0;
  whenDialogRuns([&](QDialog* dialog) {
    ++seen;
    emit notifications.applicationDidResignActive();
    dialog->reject();
  });
  click("outPointerBoxJump");
  EXPECT_EQ(seen, 1);
  EXPECT_FALSE(options().boolFor("jump"));
}

}  // namespace
}  // namespace veltrix::testing
