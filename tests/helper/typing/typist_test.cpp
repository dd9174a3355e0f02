#include "helper/typing/typist.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <linux/input-event-codes.h>

#include <memory>

#include "driverlink/packet_rules.h"

namespace veltrix {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

constexpr ButtonId kOne{1, 2};
constexpr ButtonId kTwo{1, 3};
constexpr KeyStroke kCopy{kHoldControl, 'c'};
constexpr KeyStroke kPaste{kHoldControl, 'v'};

class FakePlanner final : public KeyPlanner {
 public:
  std::optional<KeyPress> keysFor(const KeyStroke& stroke) override {
    if (stroke.keysym == 'c')
      return KeyPress{{KEY_LEFTCTRL}, KEY_C};
    if (stroke.keysym == 'v')
      return KeyPress{{KEY_LEFTCTRL}, KEY_V};
    return std::nullopt;
  }
  // Knows a and A, and composes e.
  std::optional<TypingPlan> plan(const std::string& text) override {
    if (!isKnown)
      return std::nullopt;
    TypingPlan plan;
    for (const char c : text) {
      if (c == 'a')
        plan.presses.push_back({{}, KEY_A});
      else if (c == 'A')
        plan.presses.push_back({{KEY_LEFTSHIFT}, KEY_A});
      else if (c == 'e')
        plan.isComposed = true;
      else
        plan.missing.push_back(static_cast<char32_t>(c));
    }
    return plan;
  }

  bool isKnown = true;
};

class FakeSender final : public KeySender {
 public:
  bool typeKeys(const TypeKeysPacket& packet) override {
    if (!isThere)
      return false;
    EXPECT_TRUE(isValid(packet));
    sent.push_back(packet);
    return true;
  }
  bool stopTyping() override {
    ++stops;
    return isThere;
  }
  void hangUp() override { ++hangUps; }

  bool isThere = true;
  std::vector<TypeKeysPacket> sent;
  int stops = 0;
  int hangUps = 0;
};

class TypistTest : public ::testing::Test {
 protected:
  Ended noted(const std::string& name) {
    return [this, name](const Status& status) {
      ends.push_back(name + (status ? "" : ": " + status.error().message));
    };
  }
  // The keys of the oldest packet that has not been answered, a plus for down and a minus for up.
  std::string steps(std::size_t index = 0) const {
    if (index >= sender.sent.size())
      return "nothing";
    std::string text;
    for (unsigned i = 0; i < sender.sent[index].count; ++i) {
      const KeyStep& step = sender.sent[index].step[i];
      text += (i == 0 ? "" : " ") + std::string(step.down != 0 ? "+" : "-") + std::to_string(step.code);
    }
    return text;
  }
  void answer(TypingOutcome outcome = TypingOutcome::kTyped) {
    ASSERT_FALSE(sender.sent.empty());
    auto packet = makePacket<KeysTypedPacket>();
    packet.id = sender.sent.front().id;
    packet.count = sender.sent.front().count;
    packet.outcome = static_cast<std::uint16_t>(outcome);
    sender.sent.erase(sender.sent.begin());
    typist.typed(packet);
  }
  std::vector<std::string> ended() { return std::exchange(ends, {}); }

  FakeSender sender;
  FakePlanner planner;
  Typist::Clock::time_point now{std::chrono::hours(1)};
  std::optional<Typist::Clock::time_point> alarm;
  std::vector<std::string> ends;
  Typist typist{{sender, planner, [this] { return now; }, [this](auto when) { alarm = when; }}};
};

TEST_F(TypistTest, HoldsKeysUntilTheReleaseAndLetsGoInReverse) {
  typist.hold(kOne, kCopy, noted("copy"));
  EXPECT_EQ(steps(), "+29 +46");
  EXPECT_EQ(sender.sent[0].stoppable, 0);
  EXPECT_EQ(sender.sent[0].interval, 1);
  EXPECT_THAT(ended(), IsEmpty());
  answer();
  EXPECT_THAT(ended(), ElementsAre("copy"));
  EXPECT_EQ(steps(), "nothing");
  typist.release(kOne);
  EXPECT_EQ(steps(), "-46 -29");
}

TEST_F(TypistTest, AReleaseWithoutAHoldIsNothing) {
  typist.release(kOne);
  EXPECT_EQ(steps(), "nothing");
  typist.hold(kOne, kCopy, noted("copy"));
  typist.release(kTwo);
  EXPECT_THAT(sender.sent, SizeIs(1));
}

TEST_F(TypistTest, AKeyThatTwoButtonsHoldComesUpWithTheLast) {
  typist.hold(kOne, kCopy, noted("copy"));
  answer();
  typist.hold(kTwo, kPaste, noted("paste"));
  EXPECT_EQ(steps(), "+47");
  answer();
  typist.release(kOne);
  EXPECT_EQ(steps(), "-46");
  answer();
  typist.release(kTwo);
  EXPECT_EQ(steps(), "-47 -29");
}

TEST_F(TypistTest, ASecondHoldOfAButtonEndsTheFirst) {
  typist.hold(kOne, kCopy, noted("copy"));
  typist.hold(kOne, kPaste, noted("paste"));
  answer();
  EXPECT_EQ(steps(), "-46 -29");
  EXPECT_EQ(steps(1), "+29 +47");
}

TEST_F(TypistTest, WithoutSuchAKeyItSaysSo) {
  typist.hold(kOne, {0, 'x'}, noted("x"));
  EXPECT_THAT(ended(), ElementsAre("x: no key of the keyboard layout produces it"));
  typist.release(kOne);
  EXPECT_EQ(steps(), "nothing");
}

TEST_F(TypistTest, SendsNoMoreThanTheDriverTakes) {
  for (int i = 0; i < 3; ++i) {
    typist.hold(kOne, kCopy, noted("copy"));
    typist.release(kOne);
  }
  EXPECT_THAT(sender.sent, SizeIs(2));
  for (int i = 0; i < 5; ++i) {
    EXPECT_LE(sender.sent.size(), 2U);
    EXPECT_EQ(steps(), i % 2 == 0 ? "+29 +46" : "-46 -29");
    answer();
  }
  EXPECT_EQ(steps(), "-46 -29");
}

TEST_F(TypistTest, TypesMoreSlowlyWhatDeadKeysCompose) {
  typist.type(kOne, "ae", noted("text"));
  EXPECT_EQ(sender.sent.at(0).interval, kComposingInterval);
  answer();
  typist.type(kOne, "a", noted("text"));
  EXPECT_EQ(sender.sent.at(0).interval, kTypingInterval);
}

TEST_F(TypistTest, TypesATextInPiecesAndEndsWithTheLastKeyUp) {
  typist.type(kOne, std::string(70, 'a'), noted("text"));
  ASSERT_THAT(sender.sent, SizeIs(2));
  EXPECT_EQ(sender.sent[0].count, 64);
  EXPECT_EQ(sender.sent[1].count, 64);
  EXPECT_EQ(sender.sent[0].stoppable, 1);
  EXPECT_EQ(sender.sent[0].interval, kTypingInterval);
  answer();
  ASSERT_THAT(sender.sent, SizeIs(2));
  EXPECT_EQ(sender.sent[1].count, 140 - 128);
  answer();
  EXPECT_THAT(ended(), IsEmpty());
  answer();
  EXPECT_THAT(ended(), ElementsAre("text"));
}

TEST_F(TypistTest, AModifierStaysDownForTheNextCharacterThatNeedsIt) {
  typist.type(kOne, "AAa", noted("text"));
  EXPECT_EQ(steps(), "+42 +30 -30 +30 -30 -42 +30 -30");
}

TEST_F(TypistTest, TypesWhatTheLayoutHasAndSaysWhatItHasNot) {
  typist.type(kOne, "xa", noted("text"));
  EXPECT_EQ(steps(), "+30 -30");
  answer();
  EXPECT_THAT(ended(), ElementsAre("text: the keyboard layout has no U+0078 x"));
  typist.type(kOne, "1234567", noted("text"));
  EXPECT_EQ(steps(), "nothing");
  EXPECT_THAT(ended(), ElementsAre("text: the keyboard layout has no U+0031 1, U+0032 2, U+0033 3, U+0034 4, "
                                   "U+0035 5 and 2 more"));
}

TEST_F(TypistTest, AnEmptyTextIsTypedAtOnce) {
  typist.type(kOne, "", noted("text"));
  EXPECT_THAT(ended(), ElementsAre("text"));
}

TEST_F(TypistTest, WithoutALayoutNoTextIsTyped) {
  planner.isKnown = false;
  typist.type(kOne, "a", noted("text"));
  EXPECT_THAT(ended(), ElementsAre("text: the keyboard layout is not known"));
}

TEST_F(TypistTest, ASeriesOfKeysIsPressedInItsOrderWithModifiersHeldBetween) {
  typist.typeSeries(kOne, {{kCopy, kPaste, kPaste}}, noted("series"));
  EXPECT_EQ(steps(), "+29 +46 -46 +47 -47 +47 -47 -29");
  EXPECT_THAT(ended(), IsEmpty());
  answer();
  EXPECT_THAT(ended(), ElementsAre("series"));
  typist.release(kOne);
  EXPECT_EQ(steps(), "nothing");
}

TEST_F(TypistTest, OfASeriesWithoutOneOfItsKeysNothingIsPressed) {
  typist.typeSeries(kOne, {{kCopy, KeyStroke{0, 'x'}}}, noted("series"));
  EXPECT_EQ(steps(), "nothing");
  EXPECT_THAT(ended(), ElementsAre("series: no key of the keyboard layout produces it"));
}

TEST_F(TypistTest, KeysWaitForTheEndOfAText) {
  typist.type(kOne, "a", noted("text"));
  typist.hold(kTwo, kCopy, noted("copy"));
  typist.release(kTwo);
  EXPECT_THAT(sender.sent, SizeIs(1));
  answer();
  EXPECT_EQ(steps(), "+29 +46");
  EXPECT_EQ(steps(1), "-46 -29");
}

TEST_F(TypistTest, ASecondTextWaitsForTheFirst) {
  typist.type(kOne, "a", noted("one"));
  typist.type(kTwo, "A", noted("two"));
  EXPECT_THAT(sender.sent, SizeIs(1));
  answer();
  EXPECT_THAT(ended(), ElementsAre("one"));
  EXPECT_EQ(steps(), "+42 +30 -30 -42");
}

TEST_F(TypistTest, KeysThatAreHeldAreLetGoBeforeAText) {
  typist.hold(kOne, kCopy, noted("copy"));
  answer();
  typist.type(kTwo, "a", noted("text"));
  EXPECT_EQ(steps(), "-46 -29");
  EXPECT_EQ(steps(1), "+30 -30");
  answer();
  answer();
  typist.release(kOne);
  EXPECT_EQ(steps(), "nothing");
}

TEST_F(TypistTest, TheButtonStopsItsTextAtOnce) {
  typist.type(kOne, std::string(300, 'a'), noted("text"));
  EXPECT_FALSE(typist.stop(kTwo));
  EXPECT_TRUE(typist.stop(kOne));
  EXPECT_EQ(sender.stops, 1);
  EXPECT_TRUE(typist.stop(kOne));
  EXPECT_EQ(sender.stops, 1);
  EXPECT_THAT(ended(), IsEmpty());
  answer(TypingOutcome::kStopped);
  answer(TypingOutcome::kStopped);
  EXPECT_THAT(ended(), ElementsAre("text"));
  EXPECT_EQ(steps(), "nothing");
  EXPECT_FALSE(typist.stop(kOne));
}

TEST_F(TypistTest, TheButtonStopsItsTextBeforeItBegins) {
  typist.type(kOne, "a", noted("one"));
  typist.type(kTwo, "A", noted("two"));
  EXPECT_TRUE(typist.stop(kTwo));
  EXPECT_THAT(ended(), ElementsAre("two"));
  answer();
  EXPECT_THAT(ended(), ElementsAre("one"));
  EXPECT_EQ(steps(), "nothing");
}

TEST_F(TypistTest, AKeyOfTheKeyboardStopsATextAndIsTold) {
  typist.type(kOne, std::string(300, 'a'), noted("text"));
  answer(TypingOutcome::kStopped);
  EXPECT_THAT(sender.sent, SizeIs(1));
  answer(TypingOutcome::kStopped);
  EXPECT_THAT(ended(), ElementsAre("text: a key of the keyboard stopped the typing"));
}

TEST_F(TypistTest, WithoutADriverNothingIsPressedNorLater) {
  sender.isThere = false;
  typist.hold(kOne, kCopy, noted("copy"));
  typist.type(kTwo, "a", noted("text"));
  EXPECT_THAT(ended(), ElementsAre("copy: the driver is not connected", "text: the driver is not connected"));
  sender.isThere = true;
  typist.release(kOne);
  EXPECT_EQ(steps(), "nothing");
}

TEST_F(TypistTest, TheEndOfTheDriverEndsEverything) {
  typist.hold(kOne, kCopy, noted("copy"));
  typist.type(kTwo, std::string(300, 'a'), noted("text"));
  typist.type(kOne, "a", noted("later"));
  typist.forget();
  EXPECT_THAT(ended(), ElementsAre("copy: the driver has gone", "text: the driver has gone",
                                   "later: the driver has gone"));
  EXPECT_FALSE(alarm);
  sender.sent.clear();
  typist.release(kOne);
  EXPECT_EQ(steps(), "nothing");
  typist.hold(kOne, kCopy, noted("copy"));
  EXPECT_EQ(steps(), "+29 +46");
}

TEST_F(TypistTest, ADriverWithoutAKeyboardIsTold) {
  typist.hold(kOne, kCopy, noted("copy"));
  answer(TypingOutcome::kNoKeyboard);
  EXPECT_THAT(ended(), ElementsAre("copy: the driver has no virtual keyboard"));
  typist.release(kOne);
  EXPECT_EQ(steps(), "nothing");
}

TEST_F(TypistTest, ADriverThatDoesNotAnswerIsLeft) {
  EXPECT_FALSE(alarm);
  typist.type(kOne, "a", noted("text"));
  ASSERT_TRUE(alarm);
  EXPECT_EQ(*alarm, now + kDriverPatience + std::chrono::milliseconds(2 * kTypingInterval));
  typist.timePassed();
  EXPECT_EQ(sender.hangUps, 0);
  now = *alarm;
  typist.timePassed();
  EXPECT_EQ(sender.hangUps, 1);
  EXPECT_THAT(ended(), ElementsAre("text: the driver does not answer"));
  EXPECT_FALSE(alarm);
  answer();
  EXPECT_THAT(ended(), IsEmpty());
}

TEST_F(TypistTest, EveryAnswerGivesTheDriverItsTimeAgain) {
  typist.type(kOne, std::string(300, 'a'), noted("text"));
  const auto first = *alarm;
  now += std::chrono::seconds(4);
  answer();
  EXPECT_GT(*alarm, first + std::chrono::seconds(3));
}

TEST_F(TypistTest, WhoeverIsToldOfAnEndMayAskForMore) {
  typist.type(kOne, "", [this](const Status&) { typist.hold(kTwo, kCopy, noted("copy")); });
  EXPECT_EQ(steps(), "+29 +46");
  typist.forget();
  EXPECT_THAT(ended(), ElementsAre("copy: the driver has gone"));
}

}  // namespace
}  // namespace veltrix
