#include "pane/menu_choice.h"

#include <gtest/gtest.h>

#include <string>

#include "settings/button_key.h"

namespace veltrix {
namespace {

plist::Dictionary action(std::int32_t command, std::int32_t modifiers = 0) {
  auto result = plist::Dictionary::create();
  result.set("cmd", command);
  result.set("mod", modifiers);
  return result;
}

// An entry whose buttons hold other commands, so that a test says what is a click.
class MenuChoiceTest : public ::testing::Test {
 protected:
  MenuChoiceTest() {
    entry.set("buttons", buttons);
    for (const std::int32_t button : {0, 1, 2, 3, 8, 9}) {
      put(button, action(100 + button));
    }
  }

  void put(std::int32_t button, const plist::Dictionary& value) const {
    plist::Dictionary(buttons).set(buttonKey(button), value);
  }
  plist::Dictionary at(std::int32_t button) const { return buttons.dictionaryFor(buttonKey(button)); }

  plist::Dictionary entry = plist::Dictionary::create();
  plist::Dictionary buttons = plist::Dictionary::create();
};

TEST_F(MenuChoiceTest, ButtonZeroBecomesTheClickWhenNoOtherButtonIsOne) {
  put(0, action(10, 0x0900));
  at(0).set("key", 12);
  const MenuChoice choice = menuChoice(entry, 0);
  EXPECT_EQ(choice.command, 1);
  EXPECT_FALSE(choice.enabled);
  EXPECT_EQ(at(0).int32For("cmd"), 1);
  EXPECT_EQ(at(0).int32For("mod"), 0x0900);
  EXPECT_EQ(at(0).int32For("key"), 12);
}

TEST_F(MenuChoiceTest, ButtonZeroKeepsItsCommandWhileAnotherButtonIsTheClick) {
  for (const std::int32_t other : {1, 2, 3}) {
    put(other, action(1));
    const MenuChoice choice = menuChoice(entry, 0);
    EXPECT_EQ(choice.command, 100) << other;
    EXPECT_TRUE(choice.enabled);
    EXPECT_EQ(at(0).int32For("cmd"), 100);
    put(other, action(100 + other));
  }
}

TEST_F(MenuChoiceTest, AClickOnAChordDoesNotCountAsThePlainClick) {
  put(8, action(1));
  EXPECT_EQ(menuChoice(entry, 0).command, 1);
}

TEST_F(MenuChoiceTest, AClickWithModifiersDoesNotCountAsThePlainClick) {
  put(1, action(1, 0x0100));
  EXPECT_EQ(menuChoice(entry, 0).command, 1);
}

TEST_F(MenuChoiceTest, OnlyButtonZeroIsSetBack) {
  EXPECT_EQ(menuChoice(entry, 1).command, 101);
  EXPECT_EQ(at(1).int32For("cmd"), 101);
}

TEST_F(MenuChoiceTest, ButtonZeroWithoutAnActionShowsAClickAndStoresNothing) {
  buttons.remove("00");
  const MenuChoice choice = menuChoice(entry, 0);
  EXPECT_EQ(choice.command, 1);
  EXPECT_FALSE(buttons.contains("00"));
}

TEST_F(MenuChoiceTest, TheOnlyClickIsLocked) {
  put(0, action(1));
  EXPECT_FALSE(menuChoice(entry, 0).enabled);
}

TEST_F(MenuChoiceTest, TwoClicksAreBothFree) {
  put(0, action(1));
  put(2, action(1));
  EXPECT_TRUE(menuChoice(entry, 0).enabled);
  EXPECT_TRUE(menuChoice(entry, 2).enabled);
}

TEST_F(MenuChoiceTest, AClickWithModifiersIsLockedLikeAPlainOne) {
  put(1, action(1, 0x0200));
  EXPECT_FALSE(menuChoice(entry, 1).enabled);
  put(3, action(1));
  EXPECT_TRUE(menuChoice(entry, 1).enabled);
}

TEST_F(MenuChoiceTest, AClickOnAChordIsFreeWhileAButtonIsThePlainClick) {
  put(8, action(1));
  EXPECT_FALSE(menuChoice(entry, 8).enabled);
  put(0, action(1));
  EXPECT_TRUE(menuChoice(entry, 8).enabled);
}

TEST_F(MenuChoiceTest, OtherCommandsAreFree) {
  put(0, action(1));
  EXPECT_TRUE(menuChoice(entry, 1).enabled);
}

TEST_F(MenuChoiceTest, ModifiersAndLabelsNeedAnItemOfTheirOwn) {
  put(1, action(2));
  EXPECT_TRUE(menuChoice(entry, 1).ownItemShows);
  put(1, action(2, 0x0100));
  EXPECT_FALSE(menuChoice(entry, 1).ownItemShows);
  put(1, action(2));
  at(1).set("label", "mine");
  EXPECT_FALSE(menuChoice(entry, 1).ownItemShows);
  at(1).set("label", "");
  EXPECT_TRUE(menuChoice(entry, 1).ownItemShows);
}

TEST_F(MenuChoiceTest, OnlyTheLowBitsOfModifiersCount) {
  put(1, action(2, 0x10000));
  EXPECT_TRUE(menuChoice(entry, 1).ownItemShows);
}

TEST_F(MenuChoiceTest, TagsOfSpecialItemsAreNoCommands) {
  put(1, action(-1));
  EXPECT_FALSE(menuChoice(entry, 1).ownItemShows);
}

TEST_F(MenuChoiceTest, AMissingActionShowsAsNoCommand) {
  buttons.remove("01");
  const MenuChoice choice = menuChoice(entry, 1);
  EXPECT_EQ(choice.command, 0);
  EXPECT_TRUE(choice.enabled);
  EXPECT_TRUE(choice.action.isNull());
}

struct TakenCase {
  std::int32_t tag;
  int modifiers;  // -1 for no key
  int keyCode;
  int count;
};

class TakeMenuChoiceTest : public ::testing::TestWithParam<TakenCase> {};

TEST_P(TakeMenuChoiceTest, LeavesNothingButTheDefaultsOfTheCommand) {
  auto taken = action(71, 0x0300);
  taken.set("label", "mine");
  taken.set("str", "Editor");
  taken.set("bndl", "org.example.Editor");
  taken.set("cnt", 7);
  takeMenuChoice(taken, GetParam().tag);
  auto expected = plist::Dictionary::create();
  expected.set("cmd", GetParam().tag);
  if (GetParam().modifiers >= 0) {
    expected.set("mod", GetParam().modifiers);
  }
  if (GetParam().keyCode >= 0) {
    expected.set("key", GetParam().keyCode);
  }
  if (GetParam().count >= 0) {
    expected.set("cnt", GetParam().count);
  }
  EXPECT_TRUE(plist::equal(taken, expected));
}

INSTANTIATE_TEST_SUITE_P(Commands, TakeMenuChoiceTest,
                         ::testing::Values(TakenCase{0, -1, -1, -1}, TakenCase{1, 0, -1, -1},
                                           TakenCase{9, 0, -1, -1}, TakenCase{10, 0, 255, -1},
                                           TakenCase{11, 0, 255, -1}, TakenCase{18, 0, -1, -1},
                                           TakenCase{19, -1, -1, -1}, TakenCase{20, -1, -1, 1},
                                           TakenCase{23, -1, -1, 1}, TakenCase{24, -1, -1, -1},
                                           TakenCase{70, -1, -1, -1}, TakenCase{180, -1, -1, -1}));

TEST(TakeMenuChoice, ItemsWithoutACommandChangeNothing) {
  for (const std::int32_t tag : {-1, -2}) {
    auto kept = action(71, 0x0300);
    kept.set("label", "mine");
    takeMenuChoice(kept, tag);
    EXPECT_EQ(kept.count(), 3U);
    EXPECT_EQ(kept.int32For("cmd"), 71);
  }
}

TEST(TakeMenuChoice, WithoutAnActionNothingHappens) {
  takeMenuChoice(plist::Dictionary(), 1);
}

}  // namespace
}  // namespace veltrix
