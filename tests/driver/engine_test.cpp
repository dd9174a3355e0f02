#include "driver/engine/engine.h"

#include "tests/driver/engine_fixture.h"

namespace veltrix {
namespace {

using test::by;
using test::down;
using test::together;
using test::up;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

using EngineTest = test::EngineTest;

TEST_F(EngineTest, WithoutARecordItIsAnOrdinaryMouse) {
  for (std::uint8_t button = 0; button < kMostButtons; ++button) {
    const auto code = static_cast<std::uint16_t>(BTN_MOUSE + button);
    press(button);
    EXPECT_THAT(taken(), ElementsAre(down(code)));
    release(button);
    EXPECT_THAT(taken(), ElementsAre(up(code)));
  }
  move(3, -4);
  EXPECT_THAT(taken(), ElementsAre(together(by(REL_X, 3), by(REL_Y, -4))));
  turn(120);
  EXPECT_THAT(taken(), ElementsAre(kDetentUp));
  turn(0, -120);
  EXPECT_THAT(taken(), ElementsAre(together(by(REL_HWHEEL_HI_RES, -120), by(REL_HWHEEL, -1))));
  EXPECT_THAT(notices(), IsEmpty());
}

TEST_F(EngineTest, RecordWithoutAnyButtonLeavesAnOrdinaryMouse) {
  DriverRecord record{};
  record.driverEnabled = 1;
  record.speed = record.acceleration = kRecordNotSet;
  record.action[0] = kRightClick;  // counts for nothing
  apply(record);
  click(0);
  EXPECT_THAT(taken(), ElementsAre(down(BTN_LEFT), up(BTN_LEFT)));
  turn(120);
  EXPECT_THAT(taken(), ElementsAre(kDetentUp));
}

TEST_F(EngineTest, RecordThatTurnsTheDriverOffLeavesAnOrdinaryMouse) {
  DriverRecord record = recordOf({{0, kRightClick}});
  record.driverEnabled = 0;
  record.axisFlags = kSwapXY;
  apply(record);
  click(0);
  EXPECT_THAT(taken(), ElementsAre(down(BTN_LEFT), up(BTN_LEFT)));
  move(3, 0);
  EXPECT_THAT(taken(), ElementsAre(by(REL_X, 3)));
}

TEST_F(EngineTest, ButtonsDoWhatTheirSlotsSay) {
  apply(recordOf({{0, kRightClick}, {5, command(10, 0)}}));
  press(0);
  press(5);
  EXPECT_THAT(taken(), ElementsAre(down(BTN_RIGHT), down(KEY_A)));
  release(0);
  release(5);
  EXPECT_THAT(taken(), ElementsAre(up(BTN_RIGHT), up(KEY_A)));
}

TEST_F(EngineTest, ButtonWithoutAnActionIsNotPassedOn) {
  apply(emptyRecord());
  click(0);
  click(15);
  EXPECT_THAT(taken(), IsEmpty());
}

TEST_F(EngineTest, ButtonsWhoseSlotsBelongToChordsAndWheelPassThrough) {
  apply(recordOf({{8, kRightClick}, {9, kRightClick}}));
  for (const std::uint8_t button : std::to_array<std::uint8_t>({8, 9, 12})) {
    const auto code = static_cast<std::uint16_t>(BTN_MOUSE + button);
    click(button);
    EXPECT_THAT(taken(), ElementsAre(down(code), up(code)));
  }
}

TEST_F(EngineTest, ButtonOfTheHelperIsToldAtPressAndRelease) {
  apply(recordOf({{4, command(70)}}));
  press(4);
  EXPECT_THAT(notices(), ElementsAre(ButtonNotice{4, 70, true, true}));
  wait(1000);
  release(4);
  EXPECT_THAT(notices(), ElementsAre(ButtonNotice{4, 70, true, true}, ButtonNotice{4, 70, false, true}));
  EXPECT_THAT(taken(), IsEmpty());
}

TEST_F(EngineTest, ButtonsBeyondThoseThatAreAreNothing) {
  press(16);
  press(255);
  EXPECT_THAT(taken(), IsEmpty());
}

TEST_F(EngineTest, RepeatedReportsOfOneStateAreOne) {
  press(0);
  press(0);
  release(0);
  release(0);
  EXPECT_THAT(taken(), ElementsAre(down(BTN_LEFT), up(BTN_LEFT)));
}

TEST_F(EngineTest, ChangesOfOneFrameKeepTheirOrderAndFollowTheMotion) {
  InputFrame frame;
  frame.dx = 2;
  frame.changeCount = 3;
  frame.change[0] = {0, true};
  frame.change[1] = {1, true};
  frame.change[2] = {0, false};
  send(frame);
  EXPECT_THAT(taken(), ElementsAre(by(REL_X, 2), down(BTN_LEFT), down(BTN_RIGHT), up(BTN_LEFT)));
}

TEST_F(EngineTest, FrameThatClaimsMoreChangesThanItHoldsIsReadToItsEnd) {
  InputFrame frame;
  frame.changeCount = 255;
  frame.change.fill({3, true});
  send(frame);
  EXPECT_THAT(taken(), ElementsAre(down(BTN_SIDE)));
}

class EngineModes : public EngineTest {};

TEST_F(EngineModes, SlowAndSingleAxisAreHeldByAButton) {
  apply(recordOf({{4, command(25)}, {5, command(26)}}));
  press(4);
  move(40, 0);
  EXPECT_THAT(taken(), ElementsAre(by(REL_X, 10)));
  release(4);
  press(5);
  for (int step = 0; step < 20; ++step) move(10, 1);
  for (const std::string& group : taken()) EXPECT_EQ(group.find(by(REL_Y, 1)), std::string::npos);
}

TEST_F(EngineModes, SlowHoldsWhileAllItsModifiersAreHeld) {
  DriverRecord record = emptyRecord();
  record.slowModifiers = kHeldShift | kHeldControl;
  apply(record);
  fHeldModifiers = kHeldShift;
  move(40, 0);
  fHeldModifiers = kHeldShift | kHeldControl | kHeldOption;
  move(40, 0);
  fHeldModifiers = 0;
  move(40, 0);
  EXPECT_THAT(taken(), ElementsAre(by(REL_X, 40), by(REL_X, 10), by(REL_X, 40)));
}

TEST_F(EngineModes, SingleAxisHoldsWhileItsModifiersAreHeld) {
  DriverRecord record = emptyRecord();
  record.singleModifiers = kHeldOption;
  apply(record);
  fHeldModifiers = kHeldOption;
  for (int step = 0; step < 20; ++step) move(10, 1);
  for (const std::string& group : taken()) EXPECT_EQ(group.find(by(REL_Y, 1)), std::string::npos);
}

TEST_F(EngineModes, BallScrollsAndPointerStaysWhileItsButtonIsHeld) {
  apply(recordOf({{4, command(24)}}));
  press(4);
  for (int step = 0; step < 20; ++step) move(10, 10);
  const auto groups = taken();
  ASSERT_FALSE(groups.empty());
  for (const std::string& group : groups) {
    EXPECT_EQ(group.rfind(std::to_string(REL_X) + ":", 0), std::string::npos) << group;
    EXPECT_NE(group.find(std::to_string(REL_WHEEL_HI_RES) + ":"), std::string::npos) << group;
  }
  release(4);
  move(7, 0);
  EXPECT_THAT(taken(), ElementsAre(by(REL_X, 7)));
}

TEST_F(EngineModes, ModesTurnedOnOutlastTheirButton) {
  apply(recordOf({{4, command(28)}}));
  click(4);
  move(40, 0);
  click(4);
  move(40, 0);
  EXPECT_THAT(taken(), ElementsAre(by(REL_X, 10), by(REL_X, 40)));
}

}  // namespace
}  // namespace veltrix
