#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>

#include "tests/driver/driver_core_fixture.h"

namespace veltrix {
namespace {

using std::chrono::milliseconds;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

// What it types for its helper.
using DriverCoreTypingTest = DriverCoreTest;

TEST_F(DriverCoreTypingTest, TypesAtItsTimeAndAnswers) {
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

TEST_F(DriverCoreTypingTest, WithoutAKeyboardNothingIsTyped) {
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

TypeKeysPacket textOf(std::uint32_t id) {
  auto packet = typingOf(id);
  packet.stoppable = 1;
  return packet;
}

TEST_F(DriverCoreTypingTest, AKeyOfAKeyboardStopsATextAndWhatWaitsOfIt) {
  EXPECT_TRUE(core.typeKeys(textOf(1)));
  EXPECT_TRUE(core.typeKeys(textOf(2)));
  EXPECT_THAT(sink.take(), ElementsAre(keyEvent(KEY_A, true), kSync));
  EXPECT_TRUE(keyPresses.watched);
  keyPresses.down = true;
  loop.time += milliseconds(10);
  core.expire(loop.time);
  EXPECT_THAT(sink.take(), ElementsAre(keyEvent(KEY_A, false), kSync));
  const auto answers = channel.packets<KeysTypedPacket>();
  ASSERT_EQ(answers.size(), 2U);
  EXPECT_EQ(answers[0].id, 1U);
  EXPECT_EQ(answers[0].count, 1);
  EXPECT_EQ(answers[0].outcome, static_cast<std::uint16_t>(TypingOutcome::kStopped));
  EXPECT_EQ(answers[1].count, 0);
  EXPECT_FALSE(keyPresses.watched);
  EXPECT_EQ(core.deadline(), kNever);
}

TEST_F(DriverCoreTypingTest, KeyboardsAreLookedAtWhileATextIsTypedOnly) {
  EXPECT_TRUE(core.typeKeys(typingOf(1)));
  EXPECT_TRUE(core.typeKeys(textOf(2)));
  EXPECT_EQ(keyPresses.begun, 0);
  for (int i = 0; i < 3; ++i) {
    loop.time = core.deadline();
    core.expire(loop.time);
    if (i == 1) {
      EXPECT_TRUE(keyPresses.watched);
      EXPECT_TRUE(core.typeKeys(textOf(3)));
    }
  }
  // From one packet of the text to the next nothing that has been seen is forgotten.
  EXPECT_TRUE(keyPresses.watched);
  EXPECT_EQ(keyPresses.begun, 1);
  EXPECT_EQ(keyPresses.asked, 2);
  while (core.deadline() != kNever) {
    loop.time = core.deadline();
    core.expire(loop.time);
  }
  EXPECT_FALSE(keyPresses.watched);
}

TEST_F(DriverCoreTypingTest, AModifierKeyThatIsHeldKeepsATextFromBeginning) {
  keyPresses.down = true;
  EXPECT_TRUE(core.typeKeys(textOf(1)));
  EXPECT_THAT(sink.take(), IsEmpty());
  const auto answers = channel.packets<KeysTypedPacket>();
  ASSERT_EQ(answers.size(), 1U);
  EXPECT_EQ(answers[0].count, 0);
  EXPECT_EQ(answers[0].outcome, static_cast<std::uint16_t>(TypingOutcome::kStopped));
}

TEST_F(DriverCoreTypingTest, AKeyDoesNotStopWhatIsNoText) {
  keyPresses.down = true;
  EXPECT_TRUE(core.typeKeys(typingOf(1)));
  loop.time = core.deadline();
  core.expire(loop.time);
  EXPECT_THAT(sink.take(), ElementsAre(keyEvent(KEY_A, true), kSync, keyEvent(KEY_A, false), kSync));
  EXPECT_EQ(keyPresses.asked, 0);
}

TEST_F(DriverCoreTypingTest, TheHelperStopsATextAtOnce) {
  EXPECT_TRUE(core.typeKeys(textOf(1)));
  EXPECT_TRUE(core.typeKeys(textOf(2)));
  sink.take();
  core.stopTyping();
  EXPECT_THAT(sink.take(), ElementsAre(keyEvent(KEY_A, false), kSync));
  EXPECT_EQ(channel.packets<KeysTypedPacket>().size(), 2U);
  EXPECT_FALSE(keyPresses.watched);
  EXPECT_TRUE(core.typeKeys(typingOf(3)));
  EXPECT_TRUE(core.typeKeys(typingOf(4)));
}

TEST_F(DriverCoreTypingTest, StoppingWithNothingToStopDoesNothing) {
  core.stopTyping();
  EXPECT_THAT(sink.take(), IsEmpty());
  EXPECT_THAT(channel.packets<KeysTypedPacket>(), IsEmpty());
}

TEST_F(DriverCoreTypingTest, TheEndOfTheHelperEndsTheLookAtTheKeyboards) {
  EXPECT_TRUE(core.typeKeys(textOf(1)));
  core.helperGone();
  EXPECT_FALSE(keyPresses.watched);
}

}  // namespace
}  // namespace veltrix
