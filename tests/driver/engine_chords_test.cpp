// Chords and the waiting that they need, as they come out of the whole engine.
#include "tests/driver/engine_fixture.h"

namespace veltrix {
namespace {

using test::by;
using test::down;
using test::up;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class EngineChords : public test::EngineTest {
 protected:
  EngineChords() { apply(recordOf({{0, kLeftClick}, {1, kRightClick}, {4, command(4)}, {8, kMiddleClick}})); }
};

TEST_F(EngineChords, BothButtonsInTimeAreTheChord) {
  press(0);
  wait(39);
  press(1);
  EXPECT_THAT(taken(), ElementsAre(down(BTN_MIDDLE)));
  wait(1000);
  release(1);
  EXPECT_THAT(taken(), ElementsAre(up(BTN_MIDDLE)));
  release(0);
  EXPECT_THAT(taken(), IsEmpty());
}

TEST_F(EngineChords, DeadlineItselfIsStillInTime) {
  press(0);
  fNow += kChordTime;
  press(1);
  EXPECT_THAT(taken(), ElementsAre(down(BTN_MIDDLE)));
}

TEST_F(EngineChords, ButtonAloneIsPlayedWhenItsTimeIsOver) {
  press(0);
  wait(39);
  EXPECT_THAT(taken(), IsEmpty());
  wait(1);
  EXPECT_THAT(taken(), ElementsAre(down(BTN_LEFT)));
  release(0);
  EXPECT_THAT(taken(), ElementsAre(up(BTN_LEFT)));
}

TEST_F(EngineChords, PartnerAfterADeadlineThatNobodyServedComesTooLate) {
  press(0);
  fNow += kChordTime + Microseconds{1};
  press(1);
  EXPECT_THAT(taken(), ElementsAre(down(BTN_LEFT), down(BTN_RIGHT)));
}

TEST_F(EngineChords, QuickClickIsPlayedAtItsReleaseForAMoment) {
  press(0);
  wait(10);
  release(0);
  EXPECT_THAT(taken(), ElementsAre(down(BTN_LEFT)));
  wait(30);
  EXPECT_THAT(taken(), ElementsAre(up(BTN_LEFT)));
}

TEST_F(EngineChords, TwoQuickClicksAreTwoClicks) {
  for (int time = 0; time < 2; ++time) {
    press(0);
    wait(10);
    release(0);
    wait(15);
  }
  wait(100);
  EXPECT_THAT(taken(), ElementsAre(down(BTN_LEFT), up(BTN_LEFT), down(BTN_LEFT), up(BTN_LEFT)));
}

TEST_F(EngineChords, DragKeepsItsStart) {
  press(0);
  move(kChordSlack, 0);
  EXPECT_THAT(taken(), ElementsAre(by(REL_X, kChordSlack)));
  move(1, 0);
  EXPECT_THAT(taken(), ElementsAre(down(BTN_LEFT), by(REL_X, 1)));
}

TEST_F(EngineChords, MotionInTheFrameOfThePartnerDoesNotBreakTheChord) {
  press(0);
  InputFrame frame;
  frame.dx = 100;
  frame.changeCount = 1;
  frame.change[0] = {1, true};
  send(frame);
  EXPECT_THAT(taken(), ElementsAre(by(REL_X, 100), down(BTN_MIDDLE)));
}

TEST_F(EngineChords, WheelEndsTheWaitAndFollowsThePress) {
  press(1);
  turn(120);
  EXPECT_THAT(taken(), ElementsAre(down(BTN_RIGHT), kDetentUp));
}

TEST_F(EngineChords, AnotherButtonEndsTheWaitAndFollowsThePress) {
  press(1);
  press(4);
  EXPECT_THAT(taken(), ElementsAre(down(BTN_RIGHT), down(BTN_SIDE)));
}

TEST_F(EngineChords, ChordThatDoesNothingDelaysNothing) {
  press(2);
  EXPECT_EQ(fEngine.deadline(), kNever);
  EXPECT_THAT(notices(), ElementsAre(ButtonNotice{2, 0, true, false}));
}

TEST_F(EngineChords, ChordIsToldWithItsSlot) {
  apply(recordOf({{9, command(70)}}));
  press(3);
  press(2);
  release(3);
  release(2);
  EXPECT_THAT(notices(), ElementsAre(ButtonNotice{9, 70, true, true}, ButtonNotice{9, 70, false, true}));
}

TEST_F(EngineChords, MotionRightAfterAQuickClickComesAfterItsRelease) {
  click(0);
  move(5, 0);
  EXPECT_THAT(taken(), ElementsAre(down(BTN_LEFT), up(BTN_LEFT), by(REL_X, 5)));
}

}  // namespace
}  // namespace veltrix
