#include "driver/driver_core.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>

#include "tests/driver/driver_fakes.h"

namespace veltrix {
namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;
using testing::IsEmpty;

class DriverCoreTest : public testing::Test {
 protected:
  DriverCoreTest() {
    core.setChannel(&channel);
    core.helperArrived();
  }

  std::uint32_t plug(FakeTrackballState& state, const DeviceAddress& address = kSomeTrackball) {
    return core.attach(std::make_unique<FakeTrackball>(state, address));
  }

  void apply(const DriverRecord& record = someRecord(), const DeviceAddress& address = kSomeTrackball) {
    auto packet = makePacket<ApplyPacket>();
    packet.device = address;
    packet.record = record;
    core.apply(packet);
  }

  void withdraw(const DeviceAddress& address = kSomeTrackball) {
    auto packet = makePacket<WithdrawPacket>();
    packet.device = address;
    core.withdraw(packet);
  }

  void press(FakeTrackballState& state, std::uint8_t button, bool pressed = true) {
    ASSERT_NE(state.listener, nullptr);
    state.listener->frameCame(buttonFrame(loop.time, button, pressed));
  }

  // The conditions that the helper was told of since the last time, in their order.
  std::vector<DeviceCondition> conditions() {
    std::vector<DeviceCondition> result;
    for (const auto& packet : channel.packets<DeviceStatePacket>())
      result.push_back(static_cast<DeviceCondition>(packet.condition));
    channel.clear();
    return result;
  }

  FakeLoop loop;
  FakeSink sink;
  FakeModifiers modifiers;
  FakeChannel channel;
  FakeTrackballState ball;
  FakeTrackballState other;
  DriverCore core{loop, sink, modifiers};
};

TEST_F(DriverCoreTest, ATrackballWithoutSettingsIsLeftAlone) {
  plug(ball);
  EXPECT_EQ(ball.opens, 0);
  EXPECT_THAT(conditions(), ElementsAre(DeviceCondition::kLeftAlone));
  EXPECT_FALSE(modifiers.watched);
  EXPECT_EQ(core.deadline(), kNever);
}

TEST_F(DriverCoreTest, SettingsTakeATrackballAndWorkAtOnce) {
  plug(ball);
  apply();
  EXPECT_TRUE(ball.grabbed);
  EXPECT_TRUE(modifiers.watched);
  EXPECT_THAT(conditions(), ElementsAre(DeviceCondition::kLeftAlone, DeviceCondition::kTaken));
  sink.take();
  press(ball, 1);
  EXPECT_THAT(sink.take(), ElementsAre(keyEvent(BTN_RIGHT, true), kSync));
  press(ball, 1, false);
  EXPECT_THAT(sink.take(), ElementsAre(keyEvent(BTN_RIGHT, false), kSync));
}

TEST_F(DriverCoreTest, SettingsWaitForTheirTrackball) {
  apply();
  plug(ball);
  plug(other, kOtherTrackball);
  EXPECT_TRUE(ball.grabbed);
  EXPECT_EQ(other.opens, 0);
}

TEST_F(DriverCoreTest, EachTrackballHasANumberOfItsOwn) {
  const std::uint32_t first = plug(ball);
  core.detach(first);
  const std::uint32_t second = plug(ball);
  EXPECT_NE(first, second);
  EXPECT_NE(first, 0U);
  core.detach(12345);  // unknown
  const auto states = channel.packets<DeviceStatePacket>();
  ASSERT_EQ(states.size(), 3U);
  EXPECT_EQ(states[0].number, first);
  EXPECT_EQ(states[0].device, kSomeTrackball);
  EXPECT_EQ(states[1].number, first);
  EXPECT_EQ(states[1].condition, static_cast<std::uint16_t>(DeviceCondition::kDetached));
  EXPECT_EQ(states[2].number, second);
}

TEST_F(DriverCoreTest, TheSameSettingsAgainChangeNothing) {
  plug(ball);
  apply();
  press(ball, 0);
  sink.take();
  conditions();
  apply();
  EXPECT_THAT(sink.take(), IsEmpty());
  EXPECT_THAT(conditions(), IsEmpty());
  EXPECT_EQ(ball.grabs, 1);
}

TEST_F(DriverCoreTest, OtherSettingsEndWhatAHeldButtonDoes) {
  plug(ball);
  apply();
  press(ball, 0);
  sink.take();
  DriverRecord record = someRecord();
  record.action[0].command = 2;
  apply(record);
  EXPECT_THAT(sink.take(), ElementsAre(keyEvent(BTN_LEFT, false), kSync));
  press(ball, 0, false);
  press(ball, 0);
  EXPECT_THAT(sink.take(), ElementsAre(keyEvent(BTN_RIGHT, true), kSync));
}

TEST_F(DriverCoreTest, WithdrawnSettingsReleaseEverything) {
  plug(ball);
  apply();
  press(ball, 0);
  sink.take();
  conditions();
  withdraw();
  EXPECT_THAT(sink.take(), ElementsAre(keyEvent(BTN_LEFT, false), kSync));
  EXPECT_FALSE(ball.grabbed);
  EXPECT_EQ(ball.listener, nullptr);
  EXPECT_FALSE(modifiers.watched);
  EXPECT_THAT(conditions(), ElementsAre(DeviceCondition::kLeftAlone));
}

TEST_F(DriverCoreTest, SettingsThatSwitchTheDriverOffAreLikeNone) {
  plug(ball);
  apply();
  DriverRecord record = someRecord();
  record.driverEnabled = 0;
  apply(record);
  EXPECT_FALSE(ball.grabbed);
  EXPECT_EQ(ball.listener, nullptr);
}

TEST_F(DriverCoreTest, ATrackballWithAButtonDownIsAMouseUntilItIsUp) {
  ball.down = 1;
  plug(ball);
  apply();
  EXPECT_FALSE(ball.grabbed);
  EXPECT_THAT(conditions(), ElementsAre(DeviceCondition::kLeftAlone, DeviceCondition::kWaiting));
  EXPECT_EQ(core.deadline(), kNever);
  InputFrame movement;
  movement.dx = 5;
  ball.listener->frameCame(movement);
  ball.down = 2;
  press(ball, 1);
  EXPECT_FALSE(ball.grabbed);
  ball.down = 0;
  press(ball, 1, false);
  EXPECT_TRUE(ball.grabbed);
  EXPECT_THAT(conditions(), ElementsAre(DeviceCondition::kTaken));
  EXPECT_THAT(sink.take(), IsEmpty());
}

TEST_F(DriverCoreTest, AButtonThatGoesDownJustBeforeTheGrabIsWaitedForToo) {
  ball.downOnceGrabbed = 4;
  plug(ball);
  apply();
  EXPECT_EQ(ball.grabs, 1);
  EXPECT_FALSE(ball.grabbed);
  EXPECT_THAT(conditions(), ElementsAre(DeviceCondition::kLeftAlone, DeviceCondition::kWaiting));
  ball.down = 0;
  press(ball, 2, false);
  EXPECT_TRUE(ball.grabbed);
}

TEST_F(DriverCoreTest, WaitingEndsWithLostEventsWhenNothingIsDown) {
  ball.down = 1;
  plug(ball);
  apply();
  ball.down = 0;
  ball.listener->eventsLost(0);
  EXPECT_TRUE(ball.grabbed);
}

TEST_F(DriverCoreTest, WhatAnotherProgramHasIsTriedAgainLaterAndLater) {
  ball.grabError = EBUSY;
  plug(ball);
  apply();
  const auto states = channel.packets<DeviceStatePacket>();
  ASSERT_FALSE(states.empty());
  EXPECT_EQ(states.back().condition, static_cast<std::uint16_t>(DeviceCondition::kBusy));
  EXPECT_EQ(states.back().error, EBUSY);
  conditions();
  std::vector<std::int64_t> pauses;
  for (int i = 0; i < 8; ++i) {
    const Microseconds due = core.deadline();
    pauses.push_back(std::chrono::duration_cast<milliseconds>(due - loop.time).count());
    core.expire(due - Microseconds{1});
    EXPECT_EQ(ball.grabs, i + 1);
    loop.time = due;
    core.expire(due);
    EXPECT_EQ(ball.grabs, i + 2);
  }
  EXPECT_THAT(pauses, ElementsAre(100, 200, 400, 800, 1600, 3200, 5000, 5000));
  EXPECT_THAT(conditions(), IsEmpty());
  ball.grabError = 0;
  loop.time = core.deadline();
  core.expire(loop.time);
  EXPECT_TRUE(ball.grabbed);
  EXPECT_THAT(conditions(), ElementsAre(DeviceCondition::kTaken));
  EXPECT_EQ(core.deadline(), kNever);
}

TEST_F(DriverCoreTest, WhatIsHeardAgainIsNotTakenByAnotherAnyMore) {
  ball.grabError = EBUSY;
  plug(ball);
  apply();
  ball.grabError = 0;
  InputFrame movement;
  movement.dx = 1;
  ball.listener->frameCame(movement);
  EXPECT_TRUE(ball.grabbed);
}

TEST_F(DriverCoreTest, WhatCannotBeOpenedHasFailedUntilSettingsCome) {
  ball.openError = EACCES;
  plug(ball);
  apply();
  auto states = channel.packets<DeviceStatePacket>();
  EXPECT_EQ(states.back().condition, static_cast<std::uint16_t>(DeviceCondition::kFailed));
  EXPECT_EQ(states.back().error, EACCES);
  EXPECT_EQ(core.deadline(), kNever);
  ball.openError = 0;
  apply();
  EXPECT_TRUE(ball.grabbed);
  states = channel.packets<DeviceStatePacket>();
  EXPECT_EQ(states.back().error, 0);
}

TEST_F(DriverCoreTest, ATrackballThatGoesReleasesWhatItHolds) {
  const std::uint32_t number = plug(ball);
  apply();
  press(ball, 0);
  sink.take();
  conditions();
  ball.listener->readingFailed(ENODEV);
  EXPECT_THAT(sink.take(), ElementsAre(keyEvent(BTN_LEFT, false), kSync));
  EXPECT_EQ(ball.listener, nullptr);
  EXPECT_THAT(conditions(), ElementsAre(DeviceCondition::kDetached));
  apply();
  EXPECT_EQ(ball.opens, 1);
  core.detach(number);
  EXPECT_THAT(conditions(), IsEmpty());
}

TEST_F(DriverCoreTest, ATrackballThatCannotBeReadIsLeftToOthers) {
  plug(ball);
  apply();
  conditions();
  ball.listener->readingFailed(EIO);
  EXPECT_FALSE(ball.grabbed);
  EXPECT_THAT(conditions(), ElementsAre(DeviceCondition::kFailed));
}

TEST_F(DriverCoreTest, TheEndOfTheHelperReleasesEverything) {
  plug(ball);
  plug(other, kOtherTrackball);
  apply();
  apply(someRecord(), kOtherTrackball);
  press(ball, 0);
  press(other, 1);
  auto typing = makePacket<TypeKeysPacket>();
  typing.count = 2;
  typing.interval = 1000;
  typing.step[0] = {KEY_LEFTSHIFT, 1};
  typing.step[1] = {KEY_LEFTSHIFT, 0};
  EXPECT_TRUE(core.typeKeys(typing));
  sink.take();
  channel.clear();
  core.helperGone();
  EXPECT_THAT(sink.take(), ElementsAre(keyEvent(BTN_LEFT, false), kSync, keyEvent(BTN_RIGHT, false), kSync,
                                       keyEvent(KEY_LEFTSHIFT, false), kSync));
  EXPECT_FALSE(ball.grabbed);
  EXPECT_FALSE(other.grabbed);
  EXPECT_EQ(core.deadline(), kNever);
  EXPECT_THAT(channel.sent, IsEmpty());
  // What it said is forgotten.
  FakeTrackballState late;
  plug(late);
  EXPECT_EQ(late.opens, 0);
}

TEST_F(DriverCoreTest, ANewHelperHearsOfEveryTrackballAndHasToApplyAgain) {
  plug(ball);
  plug(other, kOtherTrackball);
  apply();
  core.monitor(true);
  core.helperGone();
  channel.clear();
  core.helperArrived();
  EXPECT_THAT(conditions(), ElementsAre(DeviceCondition::kLeftAlone, DeviceCondition::kLeftAlone));
  apply();
  channel.clear();
  press(ball, 0);
  EXPECT_THAT(channel.packets<ButtonPacket>(), IsEmpty());
}

TEST_F(DriverCoreTest, TwoTrackballsThatHoldOneButtonReleaseItWithTheLast) {
  plug(ball);
  plug(other, kOtherTrackball);
  apply();
  apply(someRecord(), kOtherTrackball);
  press(ball, 0);
  press(other, 0);
  sink.take();
  press(ball, 0, false);
  EXPECT_THAT(sink.take(), IsEmpty());
  withdraw(kOtherTrackball);
  EXPECT_THAT(sink.take(), ElementsAre(keyEvent(BTN_LEFT, false), kSync));
}

TEST_F(DriverCoreTest, AlikeTrackballsShareSettings) {
  plug(ball);
  plug(other);
  apply();
  EXPECT_TRUE(ball.grabbed);
  EXPECT_TRUE(other.grabbed);
  withdraw();
  EXPECT_FALSE(ball.grabbed);
  EXPECT_FALSE(other.grabbed);
}

TEST_F(DriverCoreTest, TooManySettingsLeaveTheOldestTrackballAlone) {
  plug(ball);
  apply();
  for (std::uint16_t i = 0; i < SettingsTable::kMost; ++i) {
    EXPECT_TRUE(ball.grabbed);
    apply(someRecord(), {0xA1D0, i, 9, 0});
  }
  EXPECT_FALSE(ball.grabbed);
}

TEST_F(DriverCoreTest, TheHelperHearsOfButtonsThatAreItsOwn) {
  const std::uint32_t number = plug(ball);
  apply();
  press(ball, 0);
  press(ball, 3);
  press(ball, 3, false);
  const auto packets = channel.packets<ButtonPacket>();
  ASSERT_EQ(packets.size(), 2U);
  EXPECT_EQ(packets[0].device, kSomeTrackball);
  EXPECT_EQ(packets[0].number, number);
  EXPECT_EQ(packets[0].slot, 3);
  EXPECT_EQ(packets[0].command, 70);
  EXPECT_EQ(packets[0].pressed, 1);
  EXPECT_EQ(packets[0].forHelper, 1);
  EXPECT_EQ(packets[1].pressed, 0);
}

TEST_F(DriverCoreTest, AMonitoringHelperHearsOfAllButtons) {
  plug(ball);
  apply();
  core.monitor(true);
  press(ball, 1);
  const auto packets = channel.packets<ButtonPacket>();
  ASSERT_EQ(packets.size(), 1U);
  EXPECT_EQ(packets[0].slot, 1);
  EXPECT_EQ(packets[0].command, 2);
  EXPECT_EQ(packets[0].forHelper, 0);
  core.monitor(false);
  channel.clear();
  press(ball, 1, false);
  EXPECT_THAT(channel.packets<ButtonPacket>(), IsEmpty());
}

TEST_F(DriverCoreTest, LostEventsReleaseWhatIsNotDownAnyMore) {
  plug(ball);
  apply();
  press(ball, 0);
  sink.take();
  ball.listener->eventsLost(0);
  EXPECT_THAT(sink.take(), ElementsAre(keyEvent(BTN_LEFT, false), kSync));
}

TEST_F(DriverCoreTest, StampsThatGoBackDoNoHarm) {
  plug(ball);
  loop.time = milliseconds(5000);
  apply();
  ball.listener->frameCame(buttonFrame(milliseconds(4000), 1, true));
  ball.listener->frameCame(buttonFrame(milliseconds(3000), 1, false));
  EXPECT_THAT(sink.take(), ElementsAre(keyEvent(BTN_RIGHT, true), kSync, keyEvent(BTN_RIGHT, false), kSync));
}

TEST_F(DriverCoreTest, MovesThePointer) {
  auto packet = makePacket<MovePointerPacket>();
  packet.dx = -7;
  packet.dy = 9;
  core.movePointer(packet);
  EXPECT_THAT(sink.take(), ElementsAre(relativeEvent(REL_X, -7), relativeEvent(REL_Y, 9), kSync));
  core.movePointer(makePacket<MovePointerPacket>());
  EXPECT_THAT(sink.take(), IsEmpty());
}

TypeKeysPacket typingOf(std::uint32_t id) {
  auto packet = makePacket<TypeKeysPacket>();
  packet.id = id;
  packet.count = 2;
  packet.interval = 10;
  packet.step[0] = {KEY_A, 1};
  packet.step[1] = {KEY_A, 0};
  return packet;
}

TEST_F(DriverCoreTest, TypesAtItsTimeAndAnswers) {
  EXPECT_TRUE(core.typeKeys(typingOf(1)));
  EXPECT_THAT(sink.take(), ElementsAre(keyEvent(KEY_A, true), kSync));
  EXPECT_TRUE(core.typeKeys(typingOf(2)));
  EXPECT_FALSE(core.typeKeys(typingOf(3)));
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(core.deadline(), loop.time + milliseconds(10));
    loop.time = core.deadline();
    core.expire(loop.time);
  }
  EXPECT_THAT(sink.take(), ElementsAre(keyEvent(KEY_A, false), kSync, keyEvent(KEY_A, true), kSync,
                                       keyEvent(KEY_A, false), kSync));
  const auto answers = channel.packets<KeysTypedPacket>();
  ASSERT_EQ(answers.size(), 2U);
  EXPECT_EQ(answers[0].id, 1U);
  EXPECT_EQ(answers[1].id, 2U);
  EXPECT_EQ(answers[1].outcome, static_cast<std::uint16_t>(TypingOutcome::kTyped));
  EXPECT_EQ(core.deadline(), kNever);
}

TEST_F(DriverCoreTest, WithoutAKeyboardNothingIsTyped) {
  sink.close();
  sink.openError = EACCES;
  EXPECT_FALSE(core.hasOutputs());
  EXPECT_TRUE(core.typeKeys(typingOf(1)));
  const auto answers = channel.packets<KeysTypedPacket>();
  ASSERT_EQ(answers.size(), 1U);
  EXPECT_EQ(answers[0].count, 0);
  EXPECT_EQ(answers[0].outcome, static_cast<std::uint16_t>(TypingOutcome::kNoKeyboard));
  EXPECT_EQ(core.deadline(), kNever);
}

TEST_F(DriverCoreTest, WithoutOutputsTrackballsAreLeftAlone) {
  sink.close();
  sink.openError = ENOENT;
  plug(ball);
  apply();
  EXPECT_EQ(ball.opens, 0);
  const auto states = channel.packets<DeviceStatePacket>();
  EXPECT_EQ(states.back().condition, static_cast<std::uint16_t>(DeviceCondition::kFailed));
  EXPECT_EQ(states.back().error, ENOENT);
  sink.openError = 0;
  apply();
  EXPECT_TRUE(ball.grabbed);
  EXPECT_TRUE(core.hasOutputs());
}

TEST_F(DriverCoreTest, ATrackballThatComesFindsOutputsForAllAgain) {
  sink.close();
  sink.openError = ENOENT;
  plug(ball);
  apply();
  EXPECT_FALSE(ball.grabbed);
  sink.openError = 0;
  plug(other);
  EXPECT_TRUE(ball.grabbed);
  EXPECT_TRUE(other.grabbed);
}

TEST_F(DriverCoreTest, OutputsThatFailGiveTheTrackballsBack) {
  plug(ball);
  plug(other, kOtherTrackball);
  apply();
  apply(someRecord(), kOtherTrackball);
  press(other, 0);
  EXPECT_TRUE(core.typeKeys(typingOf(9)));
  channel.clear();
  sink.writeError = ENODEV;
  sink.openError = ENODEV;
  press(ball, 1);
  EXPECT_FALSE(ball.grabbed);
  EXPECT_FALSE(other.grabbed);
  EXPECT_FALSE(core.hasOutputs());
  ASSERT_EQ(channel.packets<KeysTypedPacket>().size(), 1U);
  EXPECT_THAT(conditions(), ElementsAre(DeviceCondition::kFailed, DeviceCondition::kFailed));
  // New ones start with nothing pressed, and so do the trackballs.
  sink.writeError = sink.openError = 0;
  sink.take();
  apply();
  EXPECT_TRUE(ball.grabbed);
  EXPECT_TRUE(other.grabbed);
  EXPECT_THAT(sink.take(), IsEmpty());
  press(other, 0);
  EXPECT_THAT(sink.take(), ElementsAre(keyEvent(BTN_LEFT, true), kSync));
}

TEST_F(DriverCoreTest, ModifiersReachTheEngine) {
  plug(ball);
  DriverRecord record = someRecord();
  record.slowModifiers = kHeldShift;
  apply(record);
  InputFrame movement;
  movement.dx = 40;
  movement.time = loop.time;
  ball.listener->frameCame(movement);
  const auto fast = sink.take();
  core.modifiersChanged(kHeldShift);
  movement.time += milliseconds(500);
  ball.listener->frameCame(movement);
  const auto slow = sink.take();
  ASSERT_EQ(fast.size(), 2U);
  ASSERT_EQ(slow.size(), 2U);
  EXPECT_NEAR(slow[0].value, fast[0].value / 4.0, 1.0);
}

}  // namespace
}  // namespace veltrix
