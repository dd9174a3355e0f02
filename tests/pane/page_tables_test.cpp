#include "pane/page_tables.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

namespace veltrix {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::int32_t> numbers(std::int32_t deviceTab) {
  const auto found = buttonNumbers(deviceTab);
  return {found.begin(), found.end()};
}

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

TEST(PageTables, EveryModelHasItsButtonsInOrder) {
  EXPECT_THAT(numbers(2), ElementsAre(0, 1, 2, 3, 8, 9));
  EXPECT_THAT(numbers(3), ElementsAre(0, 1, 2, 3, 8, 9));
  EXPECT_THAT(numbers(4), ElementsAre(0, 1, 2, 3));
  EXPECT_THAT(numbers(5), ElementsAre(0, 1, 8));
  EXPECT_THAT(numbers(6), ElementsAre(0, 1, 8));
  EXPECT_THAT(numbers(7), ElementsAre(0, 1, 8));
  EXPECT_THAT(numbers(1), IsEmpty());
  EXPECT_THAT(numbers(8), IsEmpty());
}

TEST(PageTables, AChordIsFoundBehindTheButtonsAndAnUnknownOneIsFirst) {
  EXPECT_EQ(buttonPosition(5, 8), 2);
  EXPECT_EQ(buttonPosition(5, 9), 0);
  EXPECT_EQ(buttonPosition(2, 9), 5);
}

TEST(PageTables, WithoutADeviceEveryButtonIsFirst) {
  for (const std::int32_t button : {0, 1, 2, 3, 8, 9, 12}) {
    EXPECT_EQ(buttonPosition(1, button), 0);
  }
}

TEST(PageTables, EveryModelHasAPictureOfItsOwn) {
  std::set<std::string> pictures;
  for (std::int32_t deviceTab = 1; deviceTab <= 7; ++deviceTab) {
    pictures.insert(devicePicture(deviceTab));
  }
  EXPECT_EQ(pictures.size(), 7U);
  EXPECT_STREQ(devicePicture(99), devicePicture(1));
}

}  // namespace
}  // namespace veltrix
