#include "driver/frame_decoder.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

namespace veltrix {
namespace {

using Outcome = FrameDecoder::Outcome;

input_event eventOf(std::uint16_t type, std::uint16_t code, std::int32_t value) {
  input_event event{};
  event.input_event_sec = 12;
  event.input_event_usec = 345;
  event.type = type;
  event.code = code;
  event.value = value;
  return event;
}

const input_event kReport = eventOf(EV_SYN, SYN_REPORT, 0);

class FrameDecoderTest : public ::testing::Test {
 protected:
  // The frames of these events.
  std::vector<InputFrame> frames(const std::vector<input_event>& events) {
    std::vector<InputFrame> result;
    for (const input_event& event : events) {
      const Outcome outcome = decoder.add(event);
      EXPECT_NE(outcome, Outcome::kLost);
      if (outcome == Outcome::kFrame)
        result.push_back(decoder.frame());
    }
    return result;
  }

  FrameDecoder decoder;
};

TEST_F(FrameDecoderTest, AReportIsAFrameWithTheTimeOfItsEvents) {
  const auto got =
      frames({eventOf(EV_REL, REL_X, 3), eventOf(EV_KEY, BTN_RIGHT, 1), eventOf(EV_REL, REL_Y, -4), kReport});
  ASSERT_EQ(got.size(), 1U);
  EXPECT_EQ(got[0].time, Microseconds{12'000'345});
  EXPECT_EQ(got[0].dx, 3);
  EXPECT_EQ(got[0].dy, -4);
  ASSERT_EQ(got[0].changeCount, 1);
  EXPECT_EQ(got[0].change[0].button, 1);
  EXPECT_TRUE(got[0].change[0].pressed);
}

TEST_F(FrameDecoderTest, NothingOfAFrameIsLeftForTheNext) {
  frames({eventOf(EV_REL, REL_X, 3), eventOf(EV_KEY, BTN_LEFT, 1), kReport});
  const auto got = frames({eventOf(EV_REL, REL_Y, 1), kReport});
  ASSERT_EQ(got.size(), 1U);
  EXPECT_EQ(got[0].dx, 0);
  EXPECT_EQ(got[0].changeCount, 0);
}

TEST_F(FrameDecoderTest, OtherEventsAreLeftOut) {
  EXPECT_TRUE(
      frames({eventOf(EV_MSC, MSC_SCAN, 589825), eventOf(EV_KEY, KEY_A, 1), eventOf(EV_KEY, BTN_JOYSTICK, 1),
              eventOf(EV_REL, REL_MISC, 1), eventOf(EV_ABS, ABS_X, 5), eventOf(EV_KEY, BTN_LEFT, 2),
              eventOf(EV_SYN, SYN_CONFIG, 0), kReport})
          .empty());
}

TEST_F(FrameDecoderTest, APressOfWhatIsDownDoesNotCount) {
  EXPECT_EQ(frames({eventOf(EV_KEY, BTN_LEFT, 1), kReport}).size(), 1U);
  EXPECT_TRUE(frames({eventOf(EV_KEY, BTN_LEFT, 1), kReport}).empty());
  EXPECT_TRUE(frames({eventOf(EV_KEY, BTN_RIGHT, 0), kReport}).empty());
  EXPECT_EQ(decoder.buttonsDown(), 1);
}

TEST_F(FrameDecoderTest, AllSixteenButtonsCount) {
  for (std::uint16_t button = 0; button < kMostButtons; ++button) {
    const auto got = frames({eventOf(EV_KEY, static_cast<std::uint16_t>(BTN_MOUSE + button), 1), kReport});
    ASSERT_EQ(got.size(), 1U);
    EXPECT_EQ(got[0].change[0].button, button);
  }
  EXPECT_EQ(decoder.buttonsDown(), 0xFFFF);
}

TEST_F(FrameDecoderTest, WholeDetentsCountWhereThereIsNothingFiner) {
  const auto got = frames({eventOf(EV_REL, REL_WHEEL, -2), eventOf(EV_REL, REL_HWHEEL, 1), kReport});
  ASSERT_EQ(got.size(), 1U);
  EXPECT_EQ(got[0].wheel, -240);
  EXPECT_EQ(got[0].hwheel, 120);
}

TEST_F(FrameDecoderTest, AWheelOfHighResolutionIsNotCountedTwice) {
  decoder.setHighResolution(true, true);
  const auto got = frames({eventOf(EV_REL, REL_WHEEL_HI_RES, 120), eventOf(EV_REL, REL_WHEEL, 1),
                           eventOf(EV_REL, REL_HWHEEL_HI_RES, -15), kReport});
  ASSERT_EQ(got.size(), 1U);
  EXPECT_EQ(got[0].wheel, 120);
  EXPECT_EQ(got[0].hwheel, -15);
}

TEST_F(FrameDecoderTest, EachWheelHasItsOwnResolution) {
  decoder.setHighResolution(true, false);
  const auto got = frames({eventOf(EV_REL, REL_WHEEL_HI_RES, 15), eventOf(EV_REL, REL_HWHEEL, 1), kReport});
  ASSERT_EQ(got.size(), 1U);
  EXPECT_EQ(got[0].wheel, 15);
  EXPECT_EQ(got[0].hwheel, 120);
}

TEST_F(FrameDecoderTest, TooManyChangesBecomeSeveralFrames) {
  std::vector<input_event> events;
  for (int i = 0; i < 20; ++i) events.push_back(eventOf(EV_KEY, BTN_LEFT, i % 2 == 0 ? 1 : 0));
  events.push_back(eventOf(EV_REL, REL_X, 7));
  events.push_back(kReport);
  const auto got = frames(events);
  ASSERT_EQ(got.size(), 2U);
  EXPECT_EQ(got[0].changeCount, 16);
  EXPECT_EQ(got[0].time, got[1].time);
  EXPECT_EQ(got[1].changeCount, 4);
  EXPECT_EQ(got[1].dx, 7);
  EXPECT_TRUE(got[1].change[0].pressed);
}

TEST_F(FrameDecoderTest, AFullFrameIsNotFollowedByAnEmptyOne) {
  std::vector<input_event> events;
  for (int i = 0; i < 16; ++i) events.push_back(eventOf(EV_KEY, BTN_LEFT, i % 2 == 0 ? 1 : 0));
  events.push_back(kReport);
  EXPECT_EQ(frames(events).size(), 1U);
}

TEST_F(FrameDecoderTest, SumsDoNotOverflow) {
  constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();
  constexpr std::int32_t kLeast = std::numeric_limits<std::int32_t>::min();
  const auto got = frames({eventOf(EV_REL, REL_X, kMost), eventOf(EV_REL, REL_X, kMost),
                           eventOf(EV_REL, REL_WHEEL, kLeast), eventOf(EV_REL, REL_WHEEL, kLeast), kReport});
  ASSERT_EQ(got.size(), 1U);
  EXPECT_EQ(got[0].dx, kMost);
  EXPECT_EQ(got[0].wheel, kLeast);
}

TEST_F(FrameDecoderTest, AfterALossTheStateIsAskedFor) {
  EXPECT_EQ(decoder.add(eventOf(EV_KEY, BTN_LEFT, 1)), Outcome::kNothing);
  EXPECT_EQ(decoder.add(eventOf(EV_SYN, SYN_DROPPED, 0)), Outcome::kNothing);
  EXPECT_EQ(decoder.add(eventOf(EV_REL, REL_X, 100)), Outcome::kNothing);
  EXPECT_EQ(decoder.add(eventOf(EV_KEY, BTN_RIGHT, 1)), Outcome::kNothing);
  EXPECT_EQ(decoder.add(kReport), Outcome::kLost);
  decoder.start(0b100);
  EXPECT_EQ(decoder.buttonsDown(), 0b100);
  const auto got = frames({eventOf(EV_KEY, BTN_MIDDLE, 0), kReport});
  ASSERT_EQ(got.size(), 1U);
  EXPECT_EQ(got[0].dx, 0);
  ASSERT_EQ(got[0].changeCount, 1);
  EXPECT_EQ(got[0].change[0].button, 2);
  EXPECT_FALSE(got[0].change[0].pressed);
}

TEST_F(FrameDecoderTest, TimesOutOfRangeAreLimited) {
  input_event report = kReport;
  report.input_event_sec = -5;
  report.input_event_usec = 2'000'000;
  auto got = frames({eventOf(EV_REL, REL_X, 1), report});
  ASSERT_EQ(got.size(), 1U);
  EXPECT_EQ(got[0].time, Microseconds{999'999});
  report.input_event_sec = std::numeric_limits<std::int64_t>::max();
  got = frames({eventOf(EV_REL, REL_X, 1), report});
  ASSERT_EQ(got.size(), 1U);
  EXPECT_LT(got[0].time, kNever);
}

}  // namespace
}  // namespace veltrix
