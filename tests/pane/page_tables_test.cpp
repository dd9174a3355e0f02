#include "pane/page_tables.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

namespace veltrix {
namespace {

using ::testing::ElementsAre;

TEST(PageTables, EveryModelHasItsDirectionPage) {
  std::vector<int> pages;
  for (std::int32_t deviceTab = 2; deviceTab <= 7; ++deviceTab) {
    pages.push_back(scrollDirectionPage(deviceTab));
  }
  EXPECT_THAT(pages, ElementsAre(0, 1, 0, 0, 2, 3));
}

TEST(PageTables, UnknownDeviceTabsShowTheFirstDirectionPage) {
  EXPECT_EQ(scrollDirectionPage(1), 0);
  EXPECT_EQ(scrollDirectionPage(0), 0);
  EXPECT_EQ(scrollDirectionPage(8), 0);
  EXPECT_EQ(scrollDirectionPage(-2147483647 - 1), 0);
}

TEST(PageTables, WithoutADeviceThePointerAndScrollingTabsAreHidden) {
  EXPECT_FALSE(pointerTabVisible(1));
  EXPECT_FALSE(scrollingTabVisible(1));
}

TEST(PageTables, OnlyTheModelWithoutWheelLacksTheScrollingTab) {
  for (std::int32_t deviceTab = 2; deviceTab <= 7; ++deviceTab) {
    EXPECT_TRUE(pointerTabVisible(deviceTab));
    EXPECT_EQ(scrollingTabVisible(deviceTab), deviceTab != 5);
  }
}

TEST(PageTables, TheUserIsMovedOffTheScrollingTabOfAModelWithoutWheel) {
  EXPECT_TRUE(leavesSelectedTab(5, 3));
  EXPECT_FALSE(leavesSelectedTab(5, 2));
  EXPECT_FALSE(leavesSelectedTab(4, 3));
  EXPECT_FALSE(leavesSelectedTab(1, 3));
}

TEST(PageTables, NothingCanBeRestoredWithoutADevice) {
  EXPECT_EQ(restoreAreaPage(1, 0, 2), 0);
  EXPECT_EQ(restoreAreaPage(1, 1, 2), 0);
}

TEST(PageTables, TheLastVisibleTabHasARestoreAreaOfItsOwn) {
  EXPECT_EQ(restoreAreaPage(2, 3, 4), 2);
  EXPECT_EQ(restoreAreaPage(5, 2, 3), 2);
  EXPECT_EQ(restoreAreaPage(2, 2, 4), 1);
  EXPECT_EQ(restoreAreaPage(2, 0, 4), 1);
}

TEST(PageTables, TheStripIsForMoreThanOneKind) {
  EXPECT_EQ(deviceIconsPage(0), 0);
  EXPECT_EQ(deviceIconsPage(1), 0);
  EXPECT_EQ(deviceIconsPage(2), 1);
  EXPECT_EQ(deviceIconsPage(5), 1);
}

}  // namespace
}  // namespace veltrix
