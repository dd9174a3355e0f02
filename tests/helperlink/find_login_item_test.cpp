#include <gmock/gmock.h>

#include "tests/helperlink/login_item_fixture.h"

namespace veltrix {
namespace {

using testing::Counts;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::kHelper;
using testing::LoginItemTest;
using Item = testing::FakeLoginItems::Item;

class FindLoginItemTest : public LoginItemTest {};

TEST_F(FindLoginItemTest, CountsEachKindOfMatch) {
  fList.items = {{"Anything", kHelper},
                 {"VeltrixHelper", "/elsewhere/VeltrixHelper.app"},
                 {"VeltrixHelper", std::nullopt},
                 {"Old Name", "/elsewhere/Old.app"},
                 {"Other", "/elsewhere/Other.app"}};
  const auto before = fList.items;
  EXPECT_EQ(find(kHelper, "Old Name"), 0);
  EXPECT_EQ(fCounts, (Counts{1, 2, 1}));
  EXPECT_EQ(fList.items, before);
}

TEST_F(FindLoginItemTest, CountersAreClearedFirstEvenWhenTheListCannotBeOpened) {
  fList.opensUntilFailure = 0;
  EXPECT_EQ(find(kHelper, "Name"), -1);
  EXPECT_EQ(fCounts, (Counts{0, 0, 0}));
}

TEST_F(FindLoginItemTest, SnapshotThatFailsIsAFailure) {
  fList.items = {{"VeltrixHelper", kHelper}};
  fList.snapshotFails = true;
  EXPECT_EQ(find(kHelper, std::nullopt), -1);
  EXPECT_EQ(fCounts, (Counts{0, 0, 0}));
}

TEST_F(FindLoginItemTest, CountersAreOptional) {
  fList.items = {{"Anything", kHelper}, {"VeltrixHelper", std::nullopt}, {"Old", std::nullopt}};
  EXPECT_EQ(FindLoginItem(kHelper, false, nullptr, false, nullptr, "Old", false, nullptr), 0);
  EXPECT_EQ(fList.items.size(), 3U);
  EXPECT_EQ(FindLoginItem(kHelper, true, nullptr, true, nullptr, "Old", true, nullptr), 0);
  EXPECT_THAT(fList.items, IsEmpty());
}

TEST_F(FindLoginItemTest, ItemAtTheLocationIsFinishedWithoutItsName) {
  fList.items = {{"VeltrixHelper", kHelper}};
  EXPECT_EQ(FindLoginItem(kHelper, false, &fCounts.location, true, &fCounts.pathName, "VeltrixHelper", true,
                          &fCounts.name),
            0);
  EXPECT_EQ(fCounts, (Counts{1, 0, 0}));
  EXPECT_EQ(fList.namesRead, 0);
  EXPECT_EQ(fList.items.size(), 1U);
}

TEST_F(FindLoginItemTest, PathNameComesBeforeTheGivenName) {
  fList.items = {{"VeltrixHelper", std::nullopt}};
  EXPECT_EQ(find(kHelper, "veltrixhelper"), 0);
  EXPECT_EQ(fCounts, (Counts{0, 1, 0}));
}

TEST_F(FindLoginItemTest, RemovesOnlyWhereTheFlagSaysSo) {
  const std::vector<Item> all = {{"Any", kHelper}, {"VeltrixHelper", std::nullopt}, {"Old", std::nullopt}};
  for (int flags = 0; flags < 8; ++flags) {
    fList.items = all;
    const bool location = (flags & 1) != 0;
    const bool pathName = (flags & 2) != 0;
    const bool name = (flags & 4) != 0;
    EXPECT_EQ(FindLoginItem(kHelper, location, &fCounts.location, pathName, &fCounts.pathName, "Old", name,
                            &fCounts.name),
              0);
    EXPECT_EQ(fCounts, (Counts{1, 1, 1}));
    std::vector<Item> left;
    for (int i = 0; i < 3; ++i) {
      if ((flags & (1 << i)) == 0) {
        left.push_back(all[static_cast<std::size_t>(i)]);
      }
    }
    EXPECT_EQ(fList.items, left) << flags;
  }
}

TEST_F(FindLoginItemTest, FailedRemovalIsReportedNotCountedAndDoesNotStopTheWalk) {
  fList.items = {{"VeltrixHelper", "/a/VeltrixHelper.app", false},
                 {"VeltrixHelper", "/b/VeltrixHelper.app"},
                 {"VeltrixHelper", "/c/VeltrixHelper.app"}};
  EXPECT_EQ(FindLoginItem(kHelper, false, &fCounts.location, true, &fCounts.pathName, std::nullopt, false,
                          &fCounts.name),
            -1);
  EXPECT_EQ(fCounts, (Counts{0, 2, 0}));
  EXPECT_THAT(fList.items, ElementsAre(Item{"VeltrixHelper", "/a/VeltrixHelper.app"}));
}

TEST_F(FindLoginItemTest, FailedRemovalByLocationIsNotTriedByName) {
  fList.items = {{"VeltrixHelper", kHelper, false}};
  EXPECT_EQ(FindLoginItem(kHelper, true, &fCounts.location, true, &fCounts.pathName, std::nullopt, false,
                          &fCounts.name),
            -1);
  EXPECT_EQ(fCounts, (Counts{0, 0, 0}));
  EXPECT_EQ(fList.namesRead, 0);
}

TEST_F(FindLoginItemTest, AbsentEntriesAreSkipped) {
  fList.items = {{std::nullopt, std::nullopt, true, true}, {"VeltrixHelper", kHelper}};
  EXPECT_EQ(find(kHelper, std::nullopt), 0);
  EXPECT_EQ(fCounts, (Counts{1, 0, 0}));
}

TEST_F(FindLoginItemTest, WithNeitherPathNorNameItWalksAndChangesNothing) {
  fList.items = {{"VeltrixHelper", kHelper}, {"", std::nullopt}, {std::nullopt, std::nullopt}};
  const auto before = fList.items;
  EXPECT_EQ(FindLoginItem(std::nullopt, true, &fCounts.location, true, &fCounts.pathName, std::nullopt, true,
                          &fCounts.name),
            0);
  EXPECT_EQ(fCounts, (Counts{0, 0, 0}));
  EXPECT_EQ(fList.items, before);
  EXPECT_EQ(fList.resolved, 0);
  EXPECT_EQ(fList.namesRead, 0);
}

TEST_F(FindLoginItemTest, WithoutPathOnlyTheGivenNameCounts) {
  fList.items = {{"VeltrixHelper", kHelper}, {"Other", kHelper}};
  EXPECT_EQ(find(std::nullopt, "VeltrixHelper.app"), 0);
  EXPECT_EQ(fCounts, (Counts{0, 0, 1}));
  EXPECT_EQ(fList.resolved, 0);
}

TEST_F(FindLoginItemTest, ItemThatDoesNotResolveIsNeverRemovedByLocation) {
  fList.items = {{"Something", std::nullopt}};
  EXPECT_EQ(FindLoginItem(kHelper, true, &fCounts.location, true, &fCounts.pathName, std::nullopt, true,
                          &fCounts.name),
            0);
  EXPECT_EQ(fList.items.size(), 1U);
}

TEST_F(FindLoginItemTest, ItemThatDoesNotResolveMayBeRemovedByName) {
  fList.items = {{"VeltrixHelper", std::nullopt}};
  EXPECT_EQ(FindLoginItem(kHelper, true, &fCounts.location, true, &fCounts.pathName, std::nullopt, true,
                          &fCounts.name),
            0);
  EXPECT_EQ(fCounts, (Counts{0, 1, 0}));
  EXPECT_THAT(fList.items, IsEmpty());
}

TEST_F(FindLoginItemTest, ItemWithoutDisplayNameMatchesNoName) {
  fList.items = {{std::nullopt, "/elsewhere/VeltrixHelper.app"}};
  EXPECT_EQ(find(kHelper, ""), 0);
  EXPECT_EQ(fCounts, (Counts{0, 0, 0}));
}

TEST_F(FindLoginItemTest, LetterCaseOfTheDisplayNameDoesNotMatter) {
  fList.items = {{"vELTRIXhELPER", std::nullopt}, {"TRACKBÄLLE", std::nullopt}};
  EXPECT_EQ(find(kHelper, "Trackbälle"), 0);
  EXPECT_EQ(fCounts, (Counts{0, 1, 1}));
}

TEST_F(FindLoginItemTest, LetterCaseOfALocationMatters) {
  fList.items = {{std::nullopt, "/opt/veltrix/veltrixhelper.app"}};
  EXPECT_EQ(find(kHelper, std::nullopt), 0);
  EXPECT_EQ(fCounts, (Counts{0, 0, 0}));
}

TEST_F(FindLoginItemTest, OnlyALowerCaseSuffixIsTakenOffTheNames) {
  fList.items = {{"Helper", std::nullopt}, {"helper.app", std::nullopt}};
  EXPECT_EQ(find("/opt/Helper.APP", "Thing.APP"), 0);
  EXPECT_EQ(fCounts, (Counts{0, 1, 0}));  // the second, whose name keeps its suffix
  fList.items = {{"Thing", std::nullopt}, {"thing.app", std::nullopt}};
  EXPECT_EQ(find("/opt/Helper.APP", "Thing.APP"), 0);
  EXPECT_EQ(fCounts, (Counts{0, 0, 1}));
}

TEST_F(FindLoginItemTest, FinalSlashOfALocationDoesNotMatter) {
  fList.items = {{std::nullopt, std::string(kHelper) + "/"}, {std::nullopt, kHelper}};
  EXPECT_EQ(find(std::string(kHelper) + "/", std::nullopt), 0);
  EXPECT_EQ(fCounts, (Counts{2, 0, 0}));
  fList.items = {{"VeltrixHelper", std::nullopt}};
  EXPECT_EQ(find(std::string(kHelper) + "/", std::nullopt), 0);
  EXPECT_EQ(fCounts, (Counts{0, 1, 0}));
}

}  // namespace
}  // namespace veltrix
