#include "driver/driver_core.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>

#include "tests/driver/driver_core_fixture.h"

namespace veltrix {
namespace {

using std::chrono::milliseconds;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

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

}  // namespace
}  // namespace veltrix
