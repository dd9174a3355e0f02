#include "helperlink/login_item.h"

#include <gmock/gmock.h>

#include <filesystem>

#include "tests/helperlink/login_item_fixture.h"
#include "tests/support/environment.h"
#include "tests/support/temporary_folder.h"

namespace veltrix {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::kHelper;
using testing::LoginItemTest;
using Item = testing::FakeLoginItems::Item;

class AddLoginItemTest : public LoginItemTest {};

TEST_F(AddLoginItemTest, StaleEntryOfTheNameIsReplacedByTheHelperOnce) {
  fList.items = {{"VeltrixHelper", "/old/VeltrixHelper.app"}, {"Other", "/x/Other.app"}};
  EXPECT_EQ(AddLoginItem(kHelper, std::nullopt), 0);
  EXPECT_THAT(fList.items, ElementsAre(Item{"Other", "/x/Other.app"}, Item{std::nullopt, kHelper}));
}

TEST_F(AddLoginItemTest, TwiceAddsOnlyOneEntry) {
  EXPECT_EQ(AddLoginItem(kHelper, std::nullopt), 0);
  EXPECT_EQ(AddLoginItem(kHelper, std::nullopt), 0);
  EXPECT_THAT(fList.items, ElementsAre(Item{std::nullopt, kHelper}));
}

TEST_F(AddLoginItemTest, RightEntryIsKeptWhileStaleOnesGo) {
  fList.items = {{"VeltrixHelper", "/old/VeltrixHelper.app"},
                 {"VeltrixHelper", kHelper},
                 {"VeltrixHelper", std::nullopt},
                 {"Former", "/old/Former.app"}};
  EXPECT_EQ(AddLoginItem(kHelper, "Former.app"), 0);
  EXPECT_THAT(fList.items, ElementsAre(Item{"VeltrixHelper", kHelper}));
}

TEST_F(AddLoginItemTest, FailedRemovalIsReportedWhenNothingIsAdded) {
  fList.items = {{"VeltrixHelper", "/old/VeltrixHelper.app", false}, {"VeltrixHelper", kHelper}};
  EXPECT_EQ(AddLoginItem(kHelper, std::nullopt), -1);
  EXPECT_EQ(fList.items.size(), 2U);
}

TEST_F(AddLoginItemTest, SuccessfulInsertionOutweighsAFailedRemoval) {
  fList.items = {{"VeltrixHelper", "/old/VeltrixHelper.app", false}};
  EXPECT_EQ(AddLoginItem(kHelper, std::nullopt), 0);
  EXPECT_EQ(fList.items.size(), 2U);
}

TEST_F(AddLoginItemTest, FailedInsertionKeepsTheStatusOfTheSearch) {
  fList.appendFails = true;
  EXPECT_EQ(AddLoginItem(kHelper, std::nullopt), 0);
  fList.items = {{"VeltrixHelper", "/old/VeltrixHelper.app", false}};
  EXPECT_EQ(AddLoginItem(kHelper, std::nullopt), -1);
}

TEST_F(AddLoginItemTest, ListThatCannotBeOpenedAgainKeepsTheStatusOfTheSearch) {
  fList.opensUntilFailure = 1;
  EXPECT_EQ(AddLoginItem(kHelper, std::nullopt), 0);
  EXPECT_THAT(fList.items, IsEmpty());
}

TEST_F(AddLoginItemTest, ListThatCannotBeOpenedIsAFailure) {
  fList.opensUntilFailure = 0;
  EXPECT_EQ(AddLoginItem(kHelper, std::nullopt), -1);
}

TEST_F(AddLoginItemTest, SnapshotThatFailsStillAllowsTheInsertion) {
  fList.snapshotFails = true;
  EXPECT_EQ(AddLoginItem(kHelper, std::nullopt), 0);
  EXPECT_THAT(fList.items, ElementsAre(Item{std::nullopt, kHelper}));
}

class RemoveLoginItemTest : public LoginItemTest {};

TEST_F(RemoveLoginItemTest, RemovesEveryKindOfMatchAndTellsHowMany) {
  fList.items = {{"Any", kHelper},
                 {"VeltrixHelper", "/old/VeltrixHelper.app"},
                 {"Former", std::nullopt},
                 {"Other", "/x/Other.app"}};
  std::uint32_t total = 99;
  EXPECT_EQ(RemoveLoginItem(kHelper, "Former", &total), 0);
  EXPECT_EQ(total, 3U);
  EXPECT_THAT(fList.items, ElementsAre(Item{"Other", "/x/Other.app"}));
}

TEST_F(RemoveLoginItemTest, TotalIsOptionalAndCountsOnlyWhatWasRemoved) {
  fList.items = {{"VeltrixHelper", std::nullopt, false}, {"Any", kHelper}};
  std::uint32_t total = 99;
  EXPECT_EQ(RemoveLoginItem(kHelper, std::nullopt, &total), -1);
  EXPECT_EQ(total, 1U);
  EXPECT_EQ(RemoveLoginItem(kHelper, std::nullopt, nullptr), -1);
}

TEST_F(RemoveLoginItemTest, TotalIsZeroWhenTheListCannotBeOpened) {
  fList.opensUntilFailure = 0;
  std::uint32_t total = 99;
  EXPECT_EQ(RemoveLoginItem(kHelper, "Former", &total), -1);
  EXPECT_EQ(total, 0U);
}

// The same on files.
TEST(LoginItemInAutostartFolder, HelperIsAddedOnceReplacedWhenItMovesAndRemoved) {
  const testing::TemporaryFolder folder;
  const testing::ScopedEnvironment config("XDG_CONFIG_HOME", folder / "config");
  const std::string first = folder / "a b/VeltrixHelper.app";
  const std::string second = folder / "c/VeltrixHelper.app";
  std::filesystem::create_directories(first);
  std::filesystem::create_directories(second);
  testing::writeFile(folder / "config/autostart/other.desktop", "[Desktop Entry]\nName=Other\n");

  EXPECT_EQ(AddLoginItem(first, std::nullopt), 0);
  EXPECT_EQ(AddLoginItem(first + "/", std::nullopt), 0);
  EXPECT_THAT(testing::namesIn(folder / "config/autostart"),
              ElementsAre("VeltrixHelper.desktop", "other.desktop"));
  EXPECT_EQ(openLoginItems()->snapshot().value().front()->resolve(), first);

  EXPECT_EQ(AddLoginItem(second, std::nullopt), 0);
  EXPECT_THAT(testing::namesIn(folder / "config/autostart"),
              ElementsAre("VeltrixHelper.desktop", "other.desktop"));
  EXPECT_EQ(openLoginItems()->snapshot().value().front()->resolve(), second);

  std::uint32_t total = 0;
  EXPECT_EQ(RemoveLoginItem(second, std::nullopt, &total), 0);
  EXPECT_EQ(total, 1U);
  EXPECT_THAT(testing::namesIn(folder / "config/autostart"), ElementsAre("other.desktop"));
}

}  // namespace
}  // namespace veltrix
