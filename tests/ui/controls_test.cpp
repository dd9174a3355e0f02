// What holds for all controls: read-back, saving, the restore area, keys and names.
#include "tests/ui/controls_fixture.h"

#include <QApplication>
#include <QScrollArea>
#include <QScrollBar>
#include <QTest>
#include <QWheelEvent>
#include <filesystem>

namespace veltrix::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

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
