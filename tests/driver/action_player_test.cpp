#include "driver/engine/action_player.h"

#include <gmock/gmock.h>

#include "tests/driver/action_player_fixture.h"

namespace veltrix {
namespace {

using test::by;
using test::down;
using test::together;
using test::up;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

using ActionPlayerTest = test::ActionPlayerTest;

TEST_F(ActionPlayerTest, ClickIsHeldAsLongAsItsButton) {
  begin(2);
  EXPECT_THAT(taken(), ElementsAre(down(BTN_RIGHT)));
  EXPECT_EQ(fPlayer.deadline(), kNever);
  wait(100'000);
  EXPECT_THAT(taken(), IsEmpty());
  end();
  EXPECT_THAT(taken(), ElementsAre(up(BTN_RIGHT)));
}

TEST_F(ActionPlayerTest, ModifiersOfAClickAreGroupsAroundIt) {
  begin(kClick, kShift | 0x1000);
  EXPECT_THAT(taken(), ElementsAre(together(down(KEY_LEFTSHIFT), down(KEY_LEFTCTRL)), down(BTN_LEFT)));
  end();
  EXPECT_THAT(taken(), ElementsAre(up(BTN_LEFT), together(up(KEY_LEFTCTRL), up(KEY_LEFTSHIFT))));
}

TEST_F(ActionPlayerTest, KeystrokeIsHeldWithItsModifiers) {
  begin(10, kShift, 0);
  EXPECT_THAT(taken(), ElementsAre(down(KEY_LEFTSHIFT), down(KEY_A)));
  end();
  EXPECT_THAT(taken(), ElementsAre(up(KEY_A), up(KEY_LEFTSHIFT)));
}

TEST_F(ActionPlayerTest, KeystrokeWithoutAKeyPressesNothingNotEvenModifiers) {
  begin(10, kShift, 255);
  end();
  EXPECT_THAT(taken(), IsEmpty());
}

TEST_F(ActionPlayerTest, DoubleClickHoldsItsSecondPress) {
  begin(kDoubleClick);
  EXPECT_THAT(taken(), ElementsAre(down(BTN_LEFT)));
  wait(29);
  EXPECT_THAT(taken(), IsEmpty());
  wait(1);
  EXPECT_THAT(taken(), ElementsAre(up(BTN_LEFT)));
  wait(50);
  EXPECT_THAT(taken(), ElementsAre(down(BTN_LEFT)));
  wait(10'000);
  EXPECT_THAT(taken(), IsEmpty());
  end();
  EXPECT_THAT(taken(), ElementsAre(up(BTN_LEFT)));
}

TEST_F(ActionPlayerTest, TripleClickPressesThreeTimesBetweenItsModifiers) {
  begin(kTripleClick, kShift);
  wait(1000);
  end();
  EXPECT_THAT(taken(), ElementsAre(down(KEY_LEFTSHIFT), down(BTN_LEFT), up(BTN_LEFT), down(BTN_LEFT),
                                   up(BTN_LEFT), down(BTN_LEFT), up(BTN_LEFT), up(KEY_LEFTSHIFT)));
}

TEST_F(ActionPlayerTest, DoubleClickCompletesWhenItsButtonComesUpEarly) {
  for (const int heldFor : {0, 10, 60}) {
    begin(kDoubleClick, kShift);
    wait(heldFor);
    end();
    wait(79 - heldFor);
    EXPECT_THAT(taken(), ElementsAre(down(KEY_LEFTSHIFT), down(BTN_LEFT), up(BTN_LEFT)));
    wait(1);
    EXPECT_THAT(taken(), ElementsAre(down(BTN_LEFT)));
    wait(30);
    EXPECT_THAT(taken(), ElementsAre(up(BTN_LEFT), up(KEY_LEFTSHIFT)));
    EXPECT_EQ(fPlayer.deadline(), kNever);
  }
}

TEST_F(ActionPlayerTest, PressDuringADoubleClickEndsItAndBeginsAnew) {
  begin(kDoubleClick);
  end();
  begin(kDoubleClick);
  EXPECT_THAT(taken(), ElementsAre(down(BTN_LEFT), up(BTN_LEFT), down(BTN_LEFT)));
  wait(1000);
  end();
  EXPECT_THAT(taken(), ElementsAre(up(BTN_LEFT), down(BTN_LEFT), up(BTN_LEFT)));
}

TEST_F(ActionPlayerTest, DoubleClickThatEndsBetweenItsPressesLeavesTheHoldOfOthers) {
  begin(kClick, 0, 0, kOtherVoice);
  begin(kDoubleClick);
  end();
  wait(40);
  begin(kDoubleClick);
  end();
  wait(1000);
  EXPECT_THAT(taken(), ElementsAre(down(BTN_LEFT)));
  end(kOtherVoice);
  EXPECT_THAT(taken(), ElementsAre(up(BTN_LEFT)));
}

TEST_F(ActionPlayerTest, BelatedEndKeepsAClickDownForAMoment) {
  begin(kClick);
  end(kVoice, true);
  EXPECT_THAT(taken(), ElementsAre(down(BTN_LEFT)));
  wait(30);
  EXPECT_THAT(taken(), ElementsAre(up(BTN_LEFT)));
}

TEST_F(ActionPlayerTest, BelatedEndOfAKeyIsAtOnce) {
  begin(10, 0, 0);
  end(kVoice, true);
  EXPECT_THAT(taken(), ElementsAre(down(KEY_A), up(KEY_A)));
}

TEST_F(ActionPlayerTest, WhatFollowsABelatedClickComesAfterItsRelease) {
  begin(kClick);
  end(kVoice, true);
  begin(2, 0, 0, kOtherVoice);
  EXPECT_THAT(taken(), ElementsAre(down(BTN_LEFT), up(BTN_LEFT), down(BTN_RIGHT)));
  EXPECT_EQ(fPlayer.deadline(), kNever);
}

TEST_F(ActionPlayerTest, ScrollingStepsAtOnceAndRepeatsWhileHeld) {
  const std::string step = together(by(REL_WHEEL_HI_RES, 120), by(REL_WHEEL, 1));
  begin(20, 0, 3);
  EXPECT_THAT(taken(), ElementsAre(step));
  wait(299);
  EXPECT_THAT(taken(), IsEmpty());
  wait(1);
  EXPECT_THAT(taken(), ElementsAre(step));
  wait(180);
  EXPECT_THAT(taken(), ElementsAre(step, step, step));
  end();
  wait(1000);
  EXPECT_THAT(taken(), IsEmpty());
}

TEST_F(ActionPlayerTest, LateRepeatDoesNotCatchUp) {
  begin(21, 0, 3);
  taken();
  fNow += Microseconds{10'000'000};
  fPlayer.expire(stage());
  EXPECT_EQ(taken().size(), 1U);
  EXPECT_EQ(fPlayer.deadline(), fNow + kScrollRepeat);
}

TEST_F(ActionPlayerTest, ModesHoldAsLongAsAnyOfTheirButtons) {
  begin(25);
  begin(25, 0, 0, kOtherVoice);
  EXPECT_TRUE(fPlayer.modes().slow);
  EXPECT_FALSE(fPlayer.modes().singleAxis);
  end();
  EXPECT_TRUE(fPlayer.modes().slow);
  end(kOtherVoice);
  EXPECT_FALSE(fPlayer.modes().slow);
  begin(24);
  EXPECT_TRUE(fPlayer.modes().scrollWithBall);
  end();
  begin(26);
  EXPECT_TRUE(fPlayer.modes().singleAxis);
  EXPECT_FALSE(fPlayer.modes().scrollWithBall);
}

TEST_F(ActionPlayerTest, ModesTurnOnAndOffWithEachPress) {
  for (const std::uint16_t command : std::to_array<std::uint16_t>({27, 28, 29})) {
    begin(command);
    end();
    EXPECT_EQ(fPlayer.modes().scrollWithBall, command == 27);
    EXPECT_EQ(fPlayer.modes().slow, command == 28);
    EXPECT_EQ(fPlayer.modes().singleAxis, command == 29);
    begin(command);
    end();
  }
  EXPECT_FALSE(fPlayer.modes().singleAxis);
}

TEST_F(ActionPlayerTest, HeldModeEndsWithoutEndingTheSameOneThatIsOn) {
  begin(28);
  end();
  begin(25);
  end();
  EXPECT_TRUE(fPlayer.modes().slow);
}

TEST_F(ActionPlayerTest, TapOfAClickLastsAMomentAndFurtherOnesWait) {
  tap(kClick);
  tap(kClick);
  tap(kClick);
  EXPECT_THAT(taken(), ElementsAre(down(BTN_LEFT)));
  wait(30);
  EXPECT_THAT(taken(), ElementsAre(up(BTN_LEFT)));
  wait(50 + 30 + 50 + 30);
  EXPECT_THAT(taken(), ElementsAre(down(BTN_LEFT), up(BTN_LEFT), down(BTN_LEFT), up(BTN_LEFT)));
  wait(1000);
  EXPECT_THAT(taken(), IsEmpty());
}

TEST_F(ActionPlayerTest, TapsThatWaitAreLimited) {
  for (int count = 0; count < 1000; ++count) tap(kTripleClick);
  taken();
  wait(100'000);
  EXPECT_EQ(taken().size(), 1U + 2 * 12);
}

TEST_F(ActionPlayerTest, TapOfAKeyIsAtOnce) {
  tap(10, 0);
  tap(10, 0);
  EXPECT_THAT(taken(), ElementsAre(down(KEY_A), up(KEY_A), down(KEY_A), up(KEY_A)));
}

TEST_F(ActionPlayerTest, OneKeyOfTwoVoicesIsWrittenOnce) {
  begin(kClick);
  begin(kClick, 0, 0, kOtherVoice);
  end();
  EXPECT_THAT(taken(), ElementsAre(down(BTN_LEFT)));
  end(kOtherVoice);
  EXPECT_THAT(taken(), ElementsAre(up(BTN_LEFT)));
}

TEST_F(ActionPlayerTest, EndOfEverythingReleasesAllAndLeavesEveryMode) {
  begin(kClick, kShift, 0, 0);
  begin(10, 0, 0, 1);
  begin(25, 0, 0, 2);
  begin(28, 0, 0, 3);
  begin(kDoubleClick);
  begin(20, 0, 1, kOtherVoice);
  taken();
  fPlayer.endAll(stage());
  EXPECT_THAT(taken(), ElementsAre(up(KEY_A), up(BTN_LEFT), up(KEY_LEFTSHIFT)));
  EXPECT_EQ(fPlayer.deadline(), kNever);
  EXPECT_FALSE(fPlayer.modes().slow);
  end();
  end(0);
  EXPECT_THAT(taken(), IsEmpty());
}

}  // namespace
}  // namespace veltrix
