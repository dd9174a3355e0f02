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

// What it says to its helper, and does for it.
using DriverCoreHelperTest = DriverCoreTest;

TEST_F(DriverCoreHelperTest, TheEndOfTheHelperReleasesEverything) {
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

TEST_F(DriverCoreHelperTest, TheHelperHearsOfTheLampsAndANewOneOfThoseThatAreLit) {
  const auto lamps = [this] {
    std::vector<std::uint16_t> lit;
    for (const auto& packet : channel.packets<LampsPacket>()) lit.push_back(packet.lit);
    channel.clear();
    return lit;
  };
  core.lampsChanged(kCapsLockLamp);
  core.lampsChanged(kCapsLockLamp | kNumLockLamp);
  EXPECT_THAT(lamps(), ElementsAre(kCapsLockLamp, kCapsLockLamp | kNumLockLamp));
  core.helperGone();
  core.lampsChanged(kCapsLockLamp);
  EXPECT_THAT(lamps(), IsEmpty());
  core.helperArrived();
  EXPECT_THAT(lamps(), ElementsAre(kCapsLockLamp));
  core.lampsChanged(0);
  EXPECT_THAT(lamps(), ElementsAre(0));
  core.helperGone();
  core.helperArrived();
  EXPECT_THAT(lamps(), IsEmpty());
}

TEST_F(DriverCoreHelperTest, ANewHelperHearsOfEveryTrackballAndHasToApplyAgain) {
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

TEST_F(DriverCoreHelperTest, TwoTrackballsThatHoldOneButtonReleaseItWithTheLast) {
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

TEST_F(DriverCoreHelperTest, AlikeTrackballsShareSettings) {
  plug(ball);
  plug(other);
  apply();
  EXPECT_TRUE(ball.grabbed);
  EXPECT_TRUE(other.grabbed);
  withdraw();
  EXPECT_FALSE(ball.grabbed);
  EXPECT_FALSE(other.grabbed);
}

TEST_F(DriverCoreHelperTest, TooManySettingsLeaveTheOldestTrackballAlone) {
  plug(ball);
  apply();
  for (std::uint16_t i = 0; i < SettingsTable::kMost; ++i) {
    EXPECT_TRUE(ball.grabbed);
    apply(someRecord(), {0xA1D0, i, 9, 0});
  }
  EXPECT_FALSE(ball.grabbed);
}

TEST_F(DriverCoreHelperTest, TheHelperHearsOfButtonsThatAreItsOwn) {
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

TEST_F(DriverCoreHelperTest, AMonitoringHelperHearsOfAllButtons) {
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

TEST_F(DriverCoreHelperTest, LostEventsReleaseWhatIsNotDownAnyMore) {
  plug(ball);
  apply();
  press(ball, 0);
  sink.take();
  ball.listener->eventsLost(0);
  EXPECT_THAT(sink.take(), ElementsAre(keyEvent(BTN_LEFT, false), kSync));
}

TEST_F(DriverCoreHelperTest, StampsThatGoBackDoNoHarm) {
  plug(ball);
  loop.time = milliseconds(5000);
  apply();
  ball.listener->frameCame(buttonFrame(milliseconds(4000), 1, true));
  ball.listener->frameCame(buttonFrame(milliseconds(3000), 1, false));
  EXPECT_THAT(sink.take(), ElementsAre(keyEvent(BTN_RIGHT, true), kSync, keyEvent(BTN_RIGHT, false), kSync));
}

TEST_F(DriverCoreHelperTest, MovesThePointer) {
  auto packet = makePacket<MovePointerPacket>();
  packet.dx = -7;
  packet.dy = 9;
  core.movePointer(packet);
  EXPECT_THAT(sink.take(), ElementsAre(relativeEvent(REL_X, -7), relativeEvent(REL_Y, 9), kSync));
  core.movePointer(makePacket<MovePointerPacket>());
  EXPECT_THAT(sink.take(), IsEmpty());
}

TEST_F(DriverCoreHelperTest, WithoutOutputsTrackballsAreLeftAlone) {
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

TEST_F(DriverCoreHelperTest, ATrackballThatComesFindsOutputsForAllAgain) {
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

TEST_F(DriverCoreHelperTest, OutputsThatFailGiveTheTrackballsBack) {
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

TEST_F(DriverCoreHelperTest, ModifiersReachTheEngine) {
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
