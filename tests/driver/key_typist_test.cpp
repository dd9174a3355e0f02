#include "driver/key_typist.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "driverlink/packet_rules.h"
#include "tests/driver/driver_fakes.h"

namespace veltrix {
namespace {

using std::chrono::milliseconds;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

TypeKeysPacket packetOf(std::uint32_t id, const std::vector<KeyStep>& steps, std::uint16_t interval = 5) {
  auto packet = makePacket<TypeKeysPacket>();
  packet.id = id;
  packet.count = static_cast<std::uint8_t>(steps.size());
  packet.interval = interval;
  for (std::size_t i = 0; i < steps.size(); ++i) packet.step[i] = steps[i];
  return packet;
}

class KeyTypistTest : public ::testing::Test {
 protected:
  std::optional<KeysTypedPacket> expire() {
    output.clear();
    return typist.expire(now, output);
  }

  KeyTypist typist;
  Output output;
  Microseconds now{1000};
};

TEST_F(KeyTypistTest, TypesAStepAtATimeAndAnswersWithTheLast) {
  ASSERT_TRUE(typist.take(packetOf(7, {{KEY_A, 1}, {KEY_A, 0}}), now));
  EXPECT_EQ(typist.deadline(), now);
  EXPECT_FALSE(expire());
  EXPECT_THAT(output.events(), ElementsAre(keyEvent(KEY_A, true), kSync));
  EXPECT_EQ(typist.deadline(), now + milliseconds(5));
  now += milliseconds(4);
  EXPECT_FALSE(expire());
  EXPECT_THAT(output.events(), IsEmpty());
  now += milliseconds(1);
  const auto answer = expire();
  EXPECT_THAT(output.events(), ElementsAre(keyEvent(KEY_A, false), kSync));
  ASSERT_TRUE(answer);
  EXPECT_TRUE(isValid(*answer));
  EXPECT_EQ(answer->id, 7U);
  EXPECT_EQ(answer->count, 2);
  EXPECT_EQ(answer->outcome, static_cast<std::uint16_t>(TypingOutcome::kTyped));
  EXPECT_EQ(typist.deadline(), kNever);
}

TEST_F(KeyTypistTest, OnePacketWaitsAndAnotherIsRefused) {
  EXPECT_TRUE(typist.take(packetOf(1, {{KEY_A, 1}, {KEY_A, 0}}), now));
  EXPECT_TRUE(typist.take(packetOf(2, {{KEY_B, 1}}), now));
  EXPECT_FALSE(typist.take(packetOf(3, {{KEY_C, 1}}), now));
  expire();
  now += milliseconds(5);
  EXPECT_EQ(expire()->id, 1U);
  EXPECT_EQ(typist.deadline(), now + milliseconds(5));
  now += milliseconds(5);
  EXPECT_EQ(expire()->id, 2U);
  EXPECT_THAT(output.events(), ElementsAre(keyEvent(KEY_B, true), kSync));
}

TEST_F(KeyTypistTest, KeepsTheIntervalToTheStepBefore) {
  typist.take(packetOf(1, {{KEY_A, 1}}, 100), now);
  EXPECT_TRUE(expire());
  now += milliseconds(30);
  typist.take(packetOf(2, {{KEY_A, 0}}, 1), now);
  EXPECT_EQ(typist.deadline(), Microseconds{1000} + milliseconds(100));
}

TEST_F(KeyTypistTest, DoesNotHurryAfterADelay) {
  typist.take(packetOf(1, {{KEY_A, 1}, {KEY_A, 0}, {KEY_B, 1}}), now);
  expire();
  now += milliseconds(1000);
  expire();
  EXPECT_THAT(output.events(), ElementsAre(keyEvent(KEY_A, false), kSync));
  EXPECT_EQ(typist.deadline(), now + milliseconds(5));
}

TEST_F(KeyTypistTest, AStepThatChangesNothingIsCountedAndNotWritten) {
  typist.take(packetOf(1, {{KEY_A, 0}}), now);
  EXPECT_EQ(expire()->count, 1);
  EXPECT_THAT(output.events(), IsEmpty());
}

TEST_F(KeyTypistTest, ReleasesWhatPacketsLeftDown) {
  typist.take(packetOf(1, {{KEY_LEFTSHIFT, 1}, {KEY_A, 1}}), now);
  expire();
  now += milliseconds(5);
  expire();
  output.clear();
  typist.release(output);
  EXPECT_THAT(output.events(), ElementsAre(keyEvent(KEY_A, false), keyEvent(KEY_LEFTSHIFT, false), kSync));
  output.clear();
  typist.release(output);
  EXPECT_THAT(output.events(), IsEmpty());
}

TEST_F(KeyTypistTest, GivesUpBothPackets) {
  typist.take(packetOf(1, {{KEY_A, 1}, {KEY_A, 0}}), now);
  typist.take(packetOf(2, {{KEY_B, 1}}), now);
  expire();
  const auto first = typist.giveUp(TypingOutcome::kStopped);
  ASSERT_TRUE(first);
  EXPECT_EQ(first->id, 1U);
  EXPECT_EQ(first->count, 1);
  EXPECT_EQ(first->outcome, static_cast<std::uint16_t>(TypingOutcome::kStopped));
  const auto second = typist.giveUp(TypingOutcome::kStopped);
  ASSERT_TRUE(second);
  EXPECT_EQ(second->id, 2U);
  EXPECT_EQ(second->count, 0);
  EXPECT_FALSE(typist.giveUp(TypingOutcome::kStopped));
  EXPECT_EQ(typist.deadline(), kNever);
}

TypeKeysPacket textOf(std::uint32_t id, const std::vector<KeyStep>& steps) {
  auto packet = packetOf(id, steps);
  packet.stoppable = 1;
  return packet;
}

TEST_F(KeyTypistTest, StopsTheTextThatIsTypedAndTheOneThatWaits) {
  ASSERT_TRUE(typist.take(textOf(1, {{KEY_LEFTSHIFT, 1}, {KEY_A, 1}, {KEY_A, 0}, {KEY_LEFTSHIFT, 0}}), now));
  ASSERT_TRUE(typist.take(textOf(2, {{KEY_B, 1}, {KEY_B, 0}}), now));
  EXPECT_TRUE(typist.isStoppable());
  expire();
  now += milliseconds(5);
  expire();
  const auto first = typist.stop();
  const auto second = typist.stop();
  ASSERT_TRUE(first && second);
  EXPECT_FALSE(typist.stop());
  EXPECT_EQ(first->id, 1U);
  EXPECT_EQ(first->count, 2);
  EXPECT_EQ(first->outcome, static_cast<std::uint16_t>(TypingOutcome::kStopped));
  EXPECT_EQ(second->id, 2U);
  EXPECT_EQ(second->count, 0);
  output.clear();
  typist.releaseStopped(output);
  EXPECT_THAT(output.events(), ElementsAre(keyEvent(KEY_A, false), keyEvent(KEY_LEFTSHIFT, false), kSync));
  EXPECT_EQ(typist.deadline(), kNever);
}

TEST_F(KeyTypistTest, StoppingLeavesWhatIsNoText) {
  ASSERT_TRUE(typist.take(packetOf(1, {{KEY_LEFTCTRL, 1}, {KEY_C, 1}}), now));
  ASSERT_TRUE(typist.take(textOf(2, {{KEY_B, 1}}), now));
  expire();
  EXPECT_FALSE(typist.isStoppable());
  const auto answer = typist.stop();
  ASSERT_TRUE(answer);
  EXPECT_EQ(answer->id, 2U);
  EXPECT_EQ(answer->count, 0);
  EXPECT_FALSE(typist.stop());
  output.clear();
  typist.releaseStopped(output);
  EXPECT_THAT(output.events(), IsEmpty());
  now += milliseconds(5);
  expire();
  EXPECT_THAT(output.events(), ElementsAre(keyEvent(KEY_C, true), kSync));
  output.clear();
  typist.release(output);
  EXPECT_THAT(output.events(), ElementsAre(keyEvent(KEY_LEFTCTRL, false), keyEvent(KEY_C, false), kSync));
}

}  // namespace
}  // namespace veltrix
