// The wheel, and what the engine does when its record, its buttons or its device change under it.
#include <limits>

#include "tests/driver/engine_fixture.h"

namespace veltrix {
namespace {

using test::by;
using test::down;
using test::together;
using test::up;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class EngineWheel : public test::EngineTest {};

TEST_F(EngineWheel, ScrollsByItsAmount) {
  apply(recordOf({{kWheelSlot, command(20, 6)}}));
  turn(120);
  EXPECT_THAT(taken(), ElementsAre(together(by(REL_WHEEL_HI_RES, 240), by(REL_WHEEL, 2))));
  EXPECT_THAT(notices(), IsEmpty());
}

TEST_F(EngineWheel, WithoutAnActionDoesNothing) {
  apply(recordOf({{kWheelSlot, command(0)}}));
  turn(1200, 1200);
  EXPECT_THAT(taken(), IsEmpty());
  EXPECT_THAT(notices(), IsEmpty());
}

TEST_F(EngineWheel, TapsAnyOtherActionOnceForEachDetent) {
  apply(recordOf({{kWheelSlot, command(10, 0)}}));
  turn(60);
  EXPECT_THAT(taken(), IsEmpty());
  turn(60, 120);
  EXPECT_THAT(taken(), ElementsAre(down(KEY_A), up(KEY_A)));
  turn(-240);
  EXPECT_THAT(taken(), ElementsAre(down(KEY_A), up(KEY_A), down(KEY_A), up(KEY_A)));
}

TEST_F(EngineWheel, TellsTheHelperOfEachDetent) {
  apply(recordOf({{kWheelSlot, command(146)}}));
  turn(120);
  EXPECT_THAT(notices(), ElementsAre(ButtonNotice{kWheelSlot, 146, true, true},
                                     ButtonNotice{kWheelSlot, 146, false, true}));
}

TEST_F(EngineWheel, LateDeadlineIsServedBeforeTheNextFrame) {
  apply(recordOf({{4, command(6)}}));
  press(4);
  fNow += Microseconds{500'000};
  move(1, 0);
  EXPECT_THAT(taken(), ElementsAre(down(BTN_LEFT), up(BTN_LEFT), by(REL_X, 1)));
}

class EngineApply : public test::EngineTest {};

TEST_F(EngineApply, EndsWhatHeldButtonsBeganAndIgnoresThemUntilPressedAgain) {
  press(0);
  press(1);
  taken();
  apply(recordOf({{0, kMiddleClick}, {1, kRightClick}}));
  EXPECT_THAT(taken(), ElementsAre(up(BTN_RIGHT), up(BTN_LEFT)));
  wait(1000);
  release(0);
  release(1);
  EXPECT_THAT(taken(), IsEmpty());
  click(0);
  EXPECT_THAT(taken(), ElementsAre(down(BTN_MIDDLE), up(BTN_MIDDLE)));
}

TEST_F(EngineApply, DropsAButtonThatWaitsForItsChord) {
  apply(recordOf({{0, kLeftClick}, {8, kMiddleClick}}));
  press(0);
  apply(recordOf({{0, kRightClick}, {8, kMiddleClick}}));
  wait(1000);
  release(0);
  EXPECT_THAT(taken(), IsEmpty());
}

TEST_F(EngineApply, EndsModesAndDragLockThatAreOn) {
  apply(recordOf({{4, command(28)}, {5, command(7)}}));
  click(4);
  click(5);
  taken();
  apply(emptyRecord());
  EXPECT_THAT(taken(), ElementsAre(up(BTN_LEFT)));
  move(40, 0);
  EXPECT_THAT(taken(), ElementsAre(by(REL_X, 40)));
}

TEST_F(EngineApply, TellsTheEndOfWhatTheHelperDoes) {
  apply(recordOf({{4, command(70)}}));
  press(4);
  fOutput.clear();
  apply(emptyRecord());
  EXPECT_THAT(notices(), ElementsAre(ButtonNotice{4, 70, false, true}));
}

TEST_F(EngineApply, OfTheSameRecordChangesNothing) {
  const DriverRecord record = recordOf({{0, kLeftClick}});
  apply(record, kRollsOn);
  press(0);
  taken();
  apply(record, kRollsOn);
  EXPECT_THAT(taken(), IsEmpty());
  release(0);
  EXPECT_THAT(taken(), ElementsAre(up(BTN_LEFT)));
}

TEST_F(EngineApply, OfOtherScrollParametersCounts) {
  const DriverRecord record = recordOf({{0, kLeftClick}});
  apply(record);
  press(0);
  taken();
  apply(record, kRollsOn);
  EXPECT_THAT(taken(), ElementsAre(up(BTN_LEFT)));
}

class EngineRelease : public test::EngineTest {};

TEST_F(EngineRelease, ReleasesEverythingAndForgetsTheButtons) {
  apply(recordOf({{0, {1, 0x0200, 0, 0}}, {4, command(7)}, {5, command(28)}, {6, command(20, 1)}}));
  click(4);
  press(6);
  click(5);
  press(0);
  taken();
  fEngine.release(fNow, fOutput);
  EXPECT_THAT(taken(), ElementsAre(up(BTN_LEFT), up(KEY_LEFTSHIFT)));
  EXPECT_EQ(fEngine.deadline(), kNever);
  release(0);
  EXPECT_THAT(taken(), IsEmpty());
  move(40, 0);
  press(0);
  EXPECT_THAT(taken(), ElementsAre(by(REL_X, 40), down(KEY_LEFTSHIFT), down(BTN_LEFT)));
}

class EngineResynchronization : public test::EngineTest {};

TEST_F(EngineResynchronization, PlaysTheChangesThatWereLost) {
  press(0);
  press(2);
  taken();
  fEngine.resynchronize(1U << 0 | 1U << 3, fNow, 0, fOutput);
  EXPECT_THAT(taken(), ElementsAre(up(BTN_MIDDLE), down(BTN_SIDE)));
  release(0);
  release(3);
  EXPECT_THAT(taken(), ElementsAre(up(BTN_LEFT), up(BTN_SIDE)));
}

TEST_F(EngineResynchronization, WithNothingLostChangesNothing) {
  press(0);
  taken();
  fEngine.resynchronize(1, fNow, 0, fOutput);
  EXPECT_THAT(taken(), IsEmpty());
}

TEST_F(EngineResynchronization, TakesAllButtonsAtOnce) {
  fEngine.resynchronize(0xFFFF, fNow, 0, fOutput);
  EXPECT_EQ(taken().size(), kMostButtons);
  fEngine.resynchronize(0, fNow, 0, fOutput);
  EXPECT_EQ(taken().size(), kMostButtons);
}

TEST_F(EngineResynchronization, LeavesIgnoredButtonsAlone) {
  press(0);
  apply(recordOf({{0, kRightClick}}));
  taken();
  fEngine.resynchronize(1, fNow, 0, fOutput);
  EXPECT_THAT(taken(), IsEmpty());
}

class EngineTime : public test::EngineTest {};

TEST_F(EngineTime, ThatGoesBackIsTakenAsTheLatest) {
  apply(recordOf({{0, kLeftClick}, {8, kMiddleClick}}));
  press(0);
  fNow = Microseconds{std::numeric_limits<std::int64_t>::min()};
  press(1);
  EXPECT_THAT(taken(), ElementsAre(down(BTN_MIDDLE)));
}

TEST_F(EngineTime, AtItsVeryEndStillReleases) {
  apply(recordOf({{0, kLeftClick}, {4, command(6)}, {8, kMiddleClick}}));
  fNow = Microseconds::max();
  press(4);
  press(0);
  move(1000, 1000);
  fEngine.expire(Microseconds::max(), fOutput);
  release(0);
  fEngine.release(Microseconds::max(), fOutput);
  int held = 0;
  for (const OutputEvent& event : fOutput.events())
    held += event.type != EV_KEY ? 0 : event.value != 0 ? 1 : -1;
  EXPECT_EQ(held, 0);
}

}  // namespace
}  // namespace veltrix
