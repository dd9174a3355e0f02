// The root tabs that come and go.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QTabWidget>

#include "tests/support/pane_fixture.h"

namespace veltrix::testing {
namespace {

using ::testing::ElementsAre;

class TabsTest : public PaneTest {
 public:
  // All four tabs are shown.
  TabsTest() {
    plug({{0x1020, 0x0100}});
    openPane();
  }

 protected:
  static bool show(int index) {
    return gVeltrixController->vtxShowHideTab(static_cast<std::int16_t>(index), true);
  }
  static bool hide(int index) {
    return gVeltrixController->vtxShowHideTab(static_cast<std::int16_t>(index), false);
  }
};

TEST_F(TabsTest, IdentifiersCountFromOneInOrder) {
  EXPECT_THAT(rootTabs(), ElementsAre(1, 2, 3, 4));
}

TEST_F(TabsTest, AHiddenTabComesBackToItsPlace) {
  EXPECT_TRUE(hide(2));
  EXPECT_TRUE(hide(1));
  EXPECT_THAT(rootTabs(), ElementsAre(1, 4));
  EXPECT_TRUE(show(2));
  EXPECT_THAT(rootTabs(), ElementsAre(1, 3, 4));
  EXPECT_TRUE(show(1));
  EXPECT_THAT(rootTabs(), ElementsAre(1, 2, 3, 4));
}

TEST_F(TabsTest, ATabKeepsItsTitle) {
  const QString title = find<QTabWidget>("outMainTabsRoot")->tabText(2);
  hide(2);
  show(2);
  EXPECT_EQ(find<QTabWidget>("outMainTabsRoot")->tabText(2), title);
  EXPECT_EQ(title, "Scrolling");
}

TEST_F(TabsTest, ShowingAShownOrHidingAHiddenTabChangesNothing) {
  EXPECT_FALSE(show(1));
  EXPECT_TRUE(hide(1));
  EXPECT_FALSE(hide(1));
  EXPECT_THAT(rootTabs(), ElementsAre(1, 3, 4));
}

TEST_F(TabsTest, IndicesThatAreNoTabChangeNothing) {
  for (const int index : {4, -1, 32767, -32768}) {
    EXPECT_FALSE(show(index));
    EXPECT_FALSE(hide(index));
  }
  EXPECT_THAT(rootTabs(), ElementsAre(1, 2, 3, 4));
}

TEST_F(TabsTest, HidingTheSelectedTabSelectsTheOneBefore) {
  openRootTab(3);
  hide(2);
  EXPECT_EQ(selectedRootTab(), 2);
  hide(1);
  EXPECT_EQ(selectedRootTab(), 1);
}

TEST_F(TabsTest, HidingAnotherTabKeepsTheSelectedOne) {
  openRootTab(4);
  hide(1);
  EXPECT_EQ(selectedRootTab(), 4);
  show(1);
  EXPECT_EQ(selectedRootTab(), 4);
}

TEST_F(TabsTest, TheAssignmentPageIsThePlaceAmongTheButtons) {
  EXPECT_EQ(gVeltrixController->vtxCurDeviceTabIndex(), 0);
  EXPECT_EQ(gVeltrixController->vtxCurAssignmentTabIndex(9), 5);
  plugAndPoll({{0x1022, 0x0100}, {0x1022, 0x0100}});
  EXPECT_EQ(gVeltrixController->vtxCurDeviceTabIndex(), 3);
  EXPECT_EQ(gVeltrixController->vtxCurAssignmentTabIndex(8), 2);
  EXPECT_EQ(gVeltrixController->vtxCurAssignmentTabIndex(9), 0);
}

TEST_F(TabsTest, WithoutADeviceThereIsNoDevicePageAndEveryButtonIsFirst) {
  plugAndPoll({});
  EXPECT_EQ(gVeltrixController->vtxCurDeviceTabIndex(), -1);
  for (const int button : {0, 3, 8, 9}) {
    EXPECT_EQ(gVeltrixController->vtxCurAssignmentTabIndex(button), 0);
  }
}

}  // namespace
}  // namespace veltrix::testing
