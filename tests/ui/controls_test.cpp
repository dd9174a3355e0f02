// What the pointer and scrolling controls show and store.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QRadioButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QSlider>
#include <QStackedWidget>
#include <QStyleOptionSlider>
#include <QTest>
#include <QWheelEvent>
#include <filesystem>
#include <limits>

#include "pane/acceleration_curve.h"
#include "tests/support/pane_fixture.h"

namespace veltrix::testing {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;

constexpr std::uint16_t kCrest = 0x1020;
constexpr std::uint16_t kLucent = 0x1022;

class ControlsTest : public PaneTest {
 protected:
  // The pane with one trackball whose options have been prepared.
  void openWith(const std::function<void(plist::Dictionary entry)>& prepare,
                std::uint16_t productId = kCrest) {
    plist::Dictionary entry = makeEntry(productId);
    prepare(entry);
    writeUserFile(makeDocument({entry}));
    plug({{productId, 0x0100}});
    openPane();
    log.clear();
  }

  void openWithOption(const char* key, const plist::Value& value) {
    openWith([&](const plist::Dictionary& entry) { entry.dictionaryFor("options").set(key, value); });
  }

  int position(const char* slider) const { return find<QSlider>(slider)->value(); }
  plist::Dictionary options() const { return userOptions(kCrest); }
  plist::Dictionary wheel() const { return userEntry(kCrest).dictionaryFor("buttons").dictionaryFor("12"); }
  int page(const char* stack) const { return find<QStackedWidget>(stack)->currentIndex(); }

  static QPoint grooveNearRightEnd(const QSlider& slider) {
    QStyleOptionSlider option;
    option.initFrom(&slider);
    option.maximum = slider.maximum();
    option.tickPosition = slider.tickPosition();
    const QRect groove =
        slider.style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderGroove, &slider);
    return {groove.right() - 4, groove.center().y()};
  }

  std::vector<bool> checkedKeys(const std::string& prefix) const {
    std::vector<bool> states;
    for (const char* key : {"Cmd", "Shift", "Opt", "Ctrl"}) {
      states.push_back(isChecked((prefix + key).c_str()));
    }
    return states;
  }
};

TEST_F(ControlsTest, SpeedIsShownAtItsDetentWithItsDotsPerInch) {
  openWithOption("speed", 1000);
  EXPECT_EQ(position("outPointerSliderSpeed"), 20);
  EXPECT_EQ(find<QLabel>("labelSpeedDpi")->text(), "1000 dpi");
}

TEST_F(ControlsTest, AKeyOnTheSpeedSliderStoresTheNextSpeedAtOnce) {
  openWithOption("speed", 400);
  press("outPointerSliderSpeed", Qt::Key_Right);
  EXPECT_EQ(options().int32For("speed"), 500);
  EXPECT_EQ(find<QLabel>("labelSpeedDpi")->text(), "500 dpi");
  EXPECT_THAT(log, ElementsAre("VXUp"));
}

TEST_F(ControlsTest, ASpeedBetweenTwoDetentsIsStoredBackAsTheOneShown) {
  openWithOption("speed", 450);
  EXPECT_EQ(position("outPointerSliderSpeed"), 50);
  click("outScrollBoxInertial");
  EXPECT_EQ(options().int32For("speed"), 400);
}

TEST_F(ControlsTest, TheRightEndOfTheSpeedSliderIsTheFastest) {
  openWithOption("speed", 400);
  press("outPointerSliderSpeed", Qt::Key_End);
  EXPECT_EQ(options().int32For("speed"), 5000);
  press("outPointerSliderSpeed", Qt::Key_Home);
  EXPECT_EQ(options().int32For("speed"), 80);
}

TEST_F(ControlsTest, TheMouseMovesTheSpeedSlider) {
  openWithOption("speed", 400);
  openRootTab(2);
  auto* slider = find<QSlider>("outPointerSliderSpeed");
  QTest::mouseClick(slider, Qt::LeftButton, Qt::NoModifier, grooveNearRightEnd(*slider));
  EXPECT_GT(options().int32For("speed"), 400);
  EXPECT_EQ(slider->value() % 5, 0);
}

TEST_F(ControlsTest, AccelerationOneIsPositionFifty) {
  openWithOption("acceleration", 1.0);
  EXPECT_EQ(position("outPointerSliderAccel"), 50);
}

TEST_F(ControlsTest, AccelerationIsTruncated) {
  openWithOption("acceleration", 0.999);
  EXPECT_EQ(position("outPointerSliderAccel"), 49);
}

TEST_F(ControlsTest, AccelerationIsStoredInSinglePrecision) {
  openWithOption("acceleration", 0.72);
  EXPECT_EQ(position("outPointerSliderAccel"), 36);
  press("outPointerSliderAccel", Qt::Key_Right);
  EXPECT_EQ(position("outPointerSliderAccel"), 37);
  EXPECT_EQ(options().realFor("acceleration"), static_cast<double>(0.74F));
}

TEST_F(ControlsTest, AMissingAccelerationIsPositionZero) {
  openWith([](const plist::Dictionary& entry) { entry.dictionaryFor("options").remove("acceleration"); });
  EXPECT_EQ(position("outPointerSliderAccel"), 0);
}

TEST_F(ControlsTest, TheAccelerationSliderNeverCreeps) {
  openWithOption("acceleration", 0.08);
  const int shown = position("outPointerSliderAccel");
  for (int i = 0; i < 6; ++i) {
    click("outPointerBoxSlow");
    EXPECT_EQ(position("outPointerSliderAccel"), shown);
  }
}

TEST_F(ControlsTest, AnAccelerationAboveTheUsualRangeIsKept) {
  openWithOption("acceleration", 3.0);
  EXPECT_EQ(position("outPointerSliderAccel"), 150);
  click("outScrollBoxInertial");
  EXPECT_EQ(options().realFor("acceleration"), 3.0);
}

TEST_F(ControlsTest, AccelerationIsEnabledByItsBoxAndKeptMeanwhile) {
  openWithOption("accelerate", true);
  EXPECT_TRUE(isEnabled("outPointerSliderAccel"));
  EXPECT_TRUE(isEnabled("curveAccel"));
  click("outPointerBoxAccel");
  EXPECT_FALSE(isEnabled("outPointerSliderAccel"));
  EXPECT_FALSE(isEnabled("curveAccel"));
  EXPECT_FALSE(options().boolFor("accelerate"));
  EXPECT_EQ(options().realFor("acceleration"), 1.0);
}

TEST_F(ControlsTest, TheCurveFollowsTheSlider) {
  openWithOption("acceleration", 1.0);
  press("outPointerSliderAccel", Qt::Key_Right);
  EXPECT_EQ(find<AccelerationCurve>("curveAccel")->factor(), options().realFor("acceleration"));
}

TEST_F(ControlsTest, ShiftOptionAndControlAreShownAndStoredBackUnchanged) {
  openWith([](const plist::Dictionary& entry) {
    entry.dictionaryFor("options").set("slow", true);
    entry.dictionaryFor("options").set("slow keys", 0x1A00);
  });
  EXPECT_THAT(checkedKeys("outPointerButtonSlow"), ElementsAre(false, true, true, true));
  click("outScrollBoxInertial");
  EXPECT_EQ(options().int32For("slow keys"), 0x1A00);
}

TEST_F(ControlsTest, CapsLockShowsNoKeyAndIsDropped) {
  openWithOption("slow keys", 0x0400);
  EXPECT_THAT(checkedKeys("outPointerButtonSlow"), Not(Contains(true)));
  click("outScrollBoxInertial");
  EXPECT_EQ(options().int32For("slow keys"), 0);
}

TEST_F(ControlsTest, TheSlowKeysFollowTheirBox) {
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

TEST_F(ControlsTest, TheAxisKeysFollowTheirBox) {
  openWithOption("single keys", 0x0200);
  EXPECT_THAT(checkedKeys("outPointerButtonAxis"), ElementsAre(false, true, false, false));
  EXPECT_FALSE(isEnabled("outPointerButtonAxisOpt"));
  click("outPointerBoxSingleAxis");
  click("outPointerButtonAxisOpt");
  EXPECT_TRUE(options().boolFor("single"));
  EXPECT_EQ(options().int32For("single keys"), 0x0A00);
}

TEST_F(ControlsTest, WithAccessTheJumpBoxStoresWhatItShows) {
  grantAccess(true);
  openWithOption("jump", false);
  click("outPointerBoxJump");
  EXPECT_TRUE(isChecked("outPointerBoxJump"));
  EXPECT_TRUE(options().boolFor("jump"));
  click("outPointerBoxJump");
  EXPECT_FALSE(options().boolFor("jump"));
}

TEST_F(ControlsTest, OnlyTheLowestBitOfTheHelpersStateIsAccess) {
  helperDevices.helperState = 0xFFFE;
  openWithOption("jump", true);
  EXPECT_FALSE(isChecked("outPointerBoxJump"));
  helperDevices.helperState = 0x0001;
  openWithOption("jump", true);
  EXPECT_TRUE(isChecked("outPointerBoxJump"));
}

TEST_F(ControlsTest, TurningJumpOnWithoutAccessWarnsAndLeavesItOff) {
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

TEST_F(ControlsTest, EscapingTheWarningLeavesJumpOffToo) {
  openWithOption("jump", false);
  whenDialogRuns([](QDialog* dialog) { QTest::keyClick(dialog, Qt::Key_Escape); });
  click("outPointerBoxJump");
  EXPECT_FALSE(isChecked("outPointerBoxJump"));
  EXPECT_FALSE(options().boolFor("jump"));
}

TEST_F(ControlsTest, TurningJumpOnWhileItIsStoredAlreadyNeverWarns) {
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

TEST_F(ControlsTest, AStoredJumpWithoutAccessIsShownOffAndStoredOff) {
  openWithOption("jump", true);
  EXPECT_FALSE(isChecked("outPointerBoxJump"));
  click("outScrollBoxInertial");
  EXPECT_FALSE(options().boolFor("jump"));
}

TEST_F(ControlsTest, LosingTheFocusUnderTheWarningRunsNoSecondOne) {
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

TEST_F(ControlsTest, ScrollSpeedIsTheCountItself) {
  openWith([](const plist::Dictionary& entry) {
    entry.dictionaryFor("buttons").dictionaryFor("12").set("cnt", 7);
  });
  EXPECT_EQ(position("outScrollSliderSpeed"), 7);
  press("outScrollSliderSpeed", Qt::Key_Right);
  EXPECT_EQ(wheel().int32For("cnt"), 8);
}

TEST_F(ControlsTest, AScrollSpeedOutsideTheUsualRangeIsShownAndKept) {
  for (const int amount : {0, -3, 250}) {
    openWith([&](const plist::Dictionary& entry) {
      entry.dictionaryFor("buttons").dictionaryFor("12").set("cnt", amount);
    });
    EXPECT_EQ(position("outScrollSliderSpeed"), amount);
    click("outScrollBoxInertial");
    EXPECT_EQ(wheel().int32For("cnt"), amount);
  }
}

// A mark for each amount would keep the window busy for minutes.
TEST_F(ControlsTest, AHugeScrollSpeedIsDrawnAtOnce) {
  for (const int amount : {std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
    openWith([&](const plist::Dictionary& entry) {
      entry.dictionaryFor("buttons").dictionaryFor("12").set("cnt", amount);
    });
    auto* const slider = find<QSlider>("outScrollSliderSpeed");
    EXPECT_EQ(slider->value(), amount);
    EXPECT_GT(slider->tickInterval(), std::numeric_limits<int>::max() / 100);
    EXPECT_FALSE(slider->grab().isNull());
  }
}

TEST_F(ControlsTest, ReadingTheControlsAlwaysMakesTheWheelScroll) {
  openWith([](const plist::Dictionary& entry) {
    entry.dictionaryFor("buttons").dictionaryFor("12").set("cmd", 71);
  });
  click("outScrollBoxInertial");
  EXPECT_EQ(wheel().int32For("cmd"), 20);
}

TEST_F(ControlsTest, AnEntryWithoutWheelGetsNone) {
  openWith([](const plist::Dictionary& entry) { entry.dictionaryFor("buttons").remove("12"); });
  EXPECT_EQ(position("outScrollSliderSpeed"), 0);
  click("outScrollBoxInertial");
  EXPECT_TRUE(wheel().isNull());
  EXPECT_TRUE(options().boolFor("inertial scroll"));
}

TEST_F(ControlsTest, InertiaIsStored) {
  openWithOption("inertial scroll", false);
  click("outScrollBoxInertial");
  EXPECT_TRUE(options().boolFor("inertial scroll"));
}

TEST_F(ControlsTest, TheFirstDirectionIsTheInvertedOne) {
  openWithOption("invert wheel", true);
  EXPECT_TRUE(isChecked("cellDirectionInverted"));
  click("cellDirectionNormal");
  EXPECT_FALSE(options().boolFor("invert wheel"));
  click("cellDirectionInverted");
  EXPECT_TRUE(options().boolFor("invert wheel"));
  EXPECT_THAT(log, ElementsAre("VXUp", "VXUp"));
}

TEST_F(ControlsTest, EveryModelShowsItsDirectionPictures) {
  writeUserFile(makeUsualDocument());
  openPane();
  const std::vector<std::pair<Plugged, int>> pages = {{{0x1020, 1}, 0},      {{0x2041, 0x0107}, 1},
                                                      {{0x2041, 0x0106}, 0}, {{0x1022, 1}, 0},
                                                      {{0x2048, 1}, 2},      {{0x8002, 1}, 3}};
  for (const auto& [device, expected] : pages) {
    plugAndPoll({});
    plugAndPoll({device});
    EXPECT_EQ(page("outScrollTabsDirection"), expected) << device.productId;
  }
  plugAndPoll({});
  EXPECT_EQ(page("outScrollTabsDirection"), 0);
}

TEST_F(ControlsTest, ReadingTheControlsEnablesTheDriver) {
  openWith([](plist::Dictionary entry) { entry.set("driver enabled", false); });
  click("outScrollBoxInertial");
  EXPECT_TRUE(userEntry(kCrest).boolFor("driver enabled"));
}

TEST_F(ControlsTest, OptionsWithoutAControlPassThrough) {
  openWith([](const plist::Dictionary& entry) {
    for (const char* key : {"invert x", "invert y", "invert z", "swap xy"}) {
      entry.dictionaryFor("options").set(key, true);
    }
  });
  click("outScrollBoxInertial");
  for (const char* key : {"invert x", "invert y", "invert z", "swap xy"}) {
    EXPECT_TRUE(options().boolFor(key)) << key;
  }
}

TEST_F(ControlsTest, MissingOptionsShowEverythingOffAndStayMissing) {
  openWith([](plist::Dictionary entry) { entry.remove("options"); });
  EXPECT_EQ(position("outPointerSliderSpeed"), 50);
  EXPECT_FALSE(isChecked("outPointerBoxAccel"));
  EXPECT_FALSE(isChecked("outPointerBoxSlow"));
  EXPECT_FALSE(isChecked("outPointerBoxSingleAxis"));
  click("outScrollBoxInertial");
  EXPECT_FALSE(userEntry(kCrest).contains("options"));
}

TEST_F(ControlsTest, ValuesOfForeignTypesAreReadLeniently) {
  openWith([](const plist::Dictionary& entry) {
    const plist::Dictionary own = entry.dictionaryFor("options");
    plist::Dictionary(own).set("speed", "1000");
    plist::Dictionary(own).set("accelerate", 1);
    plist::Dictionary(own).set("acceleration", 1);
  });
  EXPECT_EQ(position("outPointerSliderSpeed"), 20);
  EXPECT_TRUE(isChecked("outPointerBoxAccel"));
  EXPECT_EQ(position("outPointerSliderAccel"), 50);
}

TEST_F(ControlsTest, AFailedSaveAnnouncesNothingAndTheNextOneHoldsTheChange) {
  openWithOption("inertial scroll", false);
  std::filesystem::remove_all(home / "Library");
  writeFile(home / "Library", "in the way");
  click("outScrollBoxInertial");
  EXPECT_THAT(log, IsEmpty());
  std::filesystem::remove(home / "Library");
  click("outPointerBoxSlow");
  EXPECT_THAT(log, ElementsAre("VXUp"));
  EXPECT_TRUE(options().boolFor("inertial scroll"));
}

TEST_F(ControlsTest, TheRestoreAreaFollowsDeviceAndTab) {
  openPane();
  plugAndPoll({});
  EXPECT_EQ(page("outMainTabsDefaultsButton"), 0);
  openRootTab(4);
  EXPECT_EQ(page("outMainTabsDefaultsButton"), 0);
  plugAndPoll({{kCrest, 0x0100}});
  EXPECT_EQ(page("outMainTabsDefaultsButton"), 2);
  for (const int tab : {1, 2, 3}) {
    openRootTab(tab);
    EXPECT_EQ(page("outMainTabsDefaultsButton"), 1);
  }
  openRootTab(4);
  EXPECT_EQ(page("outMainTabsDefaultsButton"), 2);
}

TEST_F(ControlsTest, AModelWithoutWheelTakesTheUserOffItsScrollingTab) {
  openPane();
  plugAndPoll({{kCrest, 0x0100}});
  openRootTab(3);
  plug({{kLucent, 0x0100}, {kLucent, 0x0100}});
  pane->vtxCheckDevices();
  EXPECT_THAT(rootTabs(), ElementsAre(1, 2, 4));
  EXPECT_EQ(selectedRootTab(), 1);
}

TEST_F(ControlsTest, TheWheelOverAnUnfocusedSliderScrollsThePageAndChangesNothing) {
  openWithOption("speed", 400);
  openRootTab(2);
  pane->mainView()->window()->resize(600, 300);
  QApplication::processEvents();
  auto* slider = find<QSlider>("outPointerSliderSpeed");
  find("outPointerBoxSlow")->setFocus();
  auto* page = qobject_cast<QScrollArea*>(find("VeltrixPointerTabScroll"));
  ASSERT_GT(page->verticalScrollBar()->maximum(), 0);
  page->verticalScrollBar()->setValue(0);
  const QPointF where = slider->rect().center();
  QWheelEvent notch(where, slider->mapToGlobal(where), QPoint(), QPoint(0, -120), Qt::NoButton,
                    Qt::NoModifier, Qt::NoScrollPhase, false);
  QSpontaneKeyEvent::setSpontaneous(&notch);
  qApp->notify(slider, &notch);
  EXPECT_EQ(slider->value(), 50);
  EXPECT_THAT(log, IsEmpty());
  EXPECT_GT(page->verticalScrollBar()->value(), 0);
}

TEST_F(ControlsTest, EveryControlHasANameForScreenReaders) {
  openWithOption("speed", 400);
  for (const QWidget* widget : pane->mainView()->findChildren<QWidget*>()) {
    const auto* button = qobject_cast<const QAbstractButton*>(widget);
    if (widget->objectName().startsWith("out") &&
        (button != nullptr || qobject_cast<const QSlider*>(widget) != nullptr)) {
      EXPECT_FALSE(widget->accessibleName().isEmpty() && (button == nullptr || button->text().isEmpty()))
          << widget->objectName().toStdString();
    }
  }
}

TEST_F(ControlsTest, TheTabKeyVisitsThePointerControlsInTheirOrder) {
  openWith([](const plist::Dictionary& entry) {
    entry.dictionaryFor("options").set("slow", true);
    entry.dictionaryFor("options").set("single", true);
  });
  openRootTab(2);
  find("outPointerSliderSpeed")->setFocus();
  std::vector<std::string> visited;
  for (int i = 0; i < 14; ++i) {
    QWidget* const focus = QApplication::focusWidget();
    visited.push_back(focus->objectName().toStdString());
    QTest::keyClick(focus, Qt::Key_Tab);
  }
  EXPECT_THAT(visited,
              ElementsAre("outPointerSliderSpeed", "outPointerBoxAccel", "outPointerSliderAccel",
                          "outPointerBoxJump", "outPointerBoxSlow", "outPointerButtonSlowCmd",
                          "outPointerButtonSlowShift", "outPointerButtonSlowOpt", "outPointerButtonSlowCtrl",
                          "outPointerBoxSingleAxis", "outPointerButtonAxisCmd", "outPointerButtonAxisShift",
                          "outPointerButtonAxisOpt", "outPointerButtonAxisCtrl"));
}

}  // namespace
}  // namespace veltrix::testing
