#include "driver/engine/chord_resolver.h"

#include <gmock/gmock.h>
#include <rapidcheck/gtest.h>

#include <array>
#include <limits>
#include <vector>

namespace veltrix {

void PrintTo(const VoiceChange& change, std::ostream* stream) {
  *stream << (change.begins ? "begin " : "end ") << int{change.voice} << (change.isBelated ? " belated" : "");
}

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr VoiceChange begins(std::uint8_t voice) {
  return {voice, true, false};
}
constexpr VoiceChange ends(std::uint8_t voice) {
  return {voice, false, false};
}
constexpr VoiceChange endsBelatedly(std::uint8_t voice) {
  return {voice, false, true};
}

// Milliseconds, as the tests count.
constexpr Microseconds at(int milliseconds) {
  return Microseconds{std::int64_t{milliseconds} * 1000};
}

class ChordResolverTest : public ::testing::Test {
 protected:
  ChordResolverTest() { fChords.configure(true, true); }

  static std::vector<VoiceChange> listOf(const VoiceChanges& changes) {
    return {changes.begin(), changes.end()};
  }
  auto press(std::uint8_t button, int time = 0) { return listOf(fChords.press(button, at(time))); }
  auto release(std::uint8_t button) { return listOf(fChords.release(button)); }

  ChordResolver fChords;
};

TEST_F(ChordResolverTest, ButtonsOfAChordThatDoesNothingAreNotDelayed) {
  fChords.configure(false, false);
  EXPECT_THAT(press(0), ElementsAre(begins(0)));
  EXPECT_THAT(press(1), ElementsAre(begins(1)));
  EXPECT_EQ(fChords.deadline(), kNever);
  EXPECT_THAT(release(0), ElementsAre(ends(0)));
  EXPECT_THAT(release(1), ElementsAre(ends(1)));
}

TEST_F(ChordResolverTest, OneChordAloneDelaysItsOwnButtonsOnly) {
  fChords.configure(false, true);
  EXPECT_THAT(press(0), ElementsAre(begins(0)));
  EXPECT_THAT(press(2), IsEmpty());
}

TEST_F(ChordResolverTest, ButtonsWithoutAChordAreNotDelayed) {
  for (const std::uint8_t button : std::to_array<std::uint8_t>({4, 5, 6, 7, 10, 11, 13, 14, 15}))
    EXPECT_THAT(press(button), ElementsAre(begins(button)));
}

TEST_F(ChordResolverTest, ButtonsWithoutASlotPlayBeyondTheSlots) {
  EXPECT_THAT(press(8), ElementsAre(begins(24)));
  EXPECT_THAT(press(9), ElementsAre(begins(25)));
  EXPECT_THAT(press(12), ElementsAre(begins(28)));
  EXPECT_THAT(release(8), ElementsAre(ends(24)));
}

TEST_F(ChordResolverTest, TwoButtonsWithinTheTimeAreAChord) {
  EXPECT_THAT(press(0, 100), IsEmpty());
  EXPECT_EQ(fChords.deadline(), at(140));
  EXPECT_THAT(press(1, 140), ElementsAre(begins(kChordOfFirstTwo)));
  EXPECT_EQ(fChords.deadline(), kNever);
  EXPECT_THAT(press(3), IsEmpty());
  EXPECT_THAT(press(2), ElementsAre(begins(kChordOfSecondTwo)));
}

TEST_F(ChordResolverTest, PartnerThatComesTooLateIsPlayedAlone) {
  EXPECT_THAT(press(0, 0), IsEmpty());
  EXPECT_THAT(press(1, 41), ElementsAre(begins(0), begins(1)));
}

TEST_F(ChordResolverTest, ButtonIsPlayedWhenItsTimeIsOver) {
  press(2);
  EXPECT_THAT(listOf(fChords.endWait()), ElementsAre(begins(2)));
  EXPECT_EQ(fChords.deadline(), kNever);
  EXPECT_THAT(press(3, 1), ElementsAre(begins(3)));
  EXPECT_THAT(release(2), ElementsAre(ends(2)));
}

TEST_F(ChordResolverTest, OwnReleasePlaysTheButtonBelatedly) {
  press(0);
  EXPECT_THAT(release(0), ElementsAre(begins(0), endsBelatedly(0)));
  EXPECT_EQ(fChords.deadline(), kNever);
  EXPECT_THAT(release(0), IsEmpty());
}

TEST_F(ChordResolverTest, AnotherButtonEndsTheWaitAndKeepsTheOrder) {
  press(0);
  EXPECT_THAT(press(4), ElementsAre(begins(0), begins(4)));
  EXPECT_THAT(press(1), ElementsAre(begins(1)));
}

TEST_F(ChordResolverTest, ButtonOfTheOtherChordEndsTheWaitAndWaitsItself) {
  press(0, 0);
  EXPECT_THAT(press(2, 10), ElementsAre(begins(0)));
  EXPECT_EQ(fChords.deadline(), at(50));
}

TEST_F(ChordResolverTest, ReleaseOfAnotherButtonEndsTheWaitAndKeepsTheOrder) {
  press(4);
  press(0);
  EXPECT_THAT(release(4), ElementsAre(begins(0), ends(4)));
}

TEST_F(ChordResolverTest, ChordEndsWithEitherButtonAndTheOtherDoesNothing) {
  for (const std::uint8_t first : std::to_array<std::uint8_t>({0, 1})) {
    press(0);
    press(1);
    const std::uint8_t other = first ^ 1U;
    EXPECT_THAT(release(first), ElementsAre(ends(kChordOfFirstTwo)));
    EXPECT_THAT(release(other), IsEmpty());
    EXPECT_THAT(press(other), IsEmpty());
    EXPECT_THAT(release(other), ElementsAre(begins(other), endsBelatedly(other)));
  }
}

TEST_F(ChordResolverTest, ButtonPressedAgainBesideTheRestOfAChordIsNotDelayed) {
  press(0);
  press(1);
  release(0);
  EXPECT_THAT(press(0), ElementsAre(begins(0)));
  EXPECT_THAT(release(1), IsEmpty());
  EXPECT_THAT(release(0), ElementsAre(ends(0)));
}

TEST_F(ChordResolverTest, BallThatTurnsFartherThanAPressShiftsItEndsTheWait) {
  press(0);
  EXPECT_THAT(listOf(fChords.moved(3, -2)), IsEmpty());
  EXPECT_THAT(listOf(fChords.moved(-3, 0)), IsEmpty());
  EXPECT_THAT(listOf(fChords.moved(0, 1)), ElementsAre(begins(0)));
  EXPECT_THAT(listOf(fChords.moved(1000, 0)), IsEmpty());
}

TEST_F(ChordResolverTest, EachWaitCountsTheBallAnew) {
  press(0);
  fChords.moved(8, 0);
  release(0);
  press(0);
  EXPECT_THAT(listOf(fChords.moved(8, 0)), IsEmpty());
  constexpr auto kFarthest = std::numeric_limits<std::int32_t>::min();
  EXPECT_THAT(listOf(fChords.moved(kFarthest, kFarthest)), ElementsAre(begins(0)));
}

TEST_F(ChordResolverTest, IgnoredButtonsDoNothingUntilPressedAgain) {
  press(4);
  press(0);
  fChords.ignoreHeld();
  EXPECT_EQ(fChords.deadline(), kNever);
  EXPECT_TRUE(fChords.isDown(0));
  EXPECT_THAT(press(1), ElementsAre(begins(1)));
  EXPECT_THAT(release(0), IsEmpty());
  EXPECT_THAT(release(4), IsEmpty());
  EXPECT_THAT(press(4), ElementsAre(begins(4)));
}

TEST_F(ChordResolverTest, AfterAResetEveryButtonIsUp) {
  press(0);
  press(4);
  fChords.reset();
  EXPECT_FALSE(fChords.isDown(0));
  EXPECT_FALSE(fChords.isDown(4));
  EXPECT_EQ(fChords.deadline(), kNever);
  EXPECT_THAT(release(4), IsEmpty());
}

TEST_F(ChordResolverTest, PressOfAButtonThatIsDownIsNothing) {
  press(5);
  EXPECT_THAT(press(5), IsEmpty());
}

// Every press of a button is heard exactly once: alone, or as half of a chord.
RC_GTEST_PROP(ChordResolver, NeverLosesOrDoublesAPress, ()) {
  ChordResolver chords;
  chords.configure(true, *rc::gen::arbitrary<bool>());
  std::array<int, kMostButtons> pressed{};
  std::array<int, kVoices> begun{};
  std::array<bool, kVoices> plays{};
  std::int64_t now = 0;
  const auto take = [&](const VoiceChanges& changes) {
    for (const auto& change : changes) {
      RC_ASSERT(plays[change.voice] != change.begins);
      plays[change.voice] = change.begins;
      begun[change.voice] += change.begins ? 1 : 0;
    }
  };
  for (const auto& [button, pause] : *rc::gen::container<std::vector<std::pair<int, int>>>(
           rc::gen::pair(rc::gen::inRange(0, 7), rc::gen::inRange(0, 30)))) {
    now += std::int64_t{pause} * 1000;
    if (chords.deadline() < Microseconds{now} || button == 6) {
      take(chords.endWait());
      continue;
    }
    const auto index = static_cast<std::uint8_t>(button);
    const bool wasDown = chords.isDown(index);
    take(wasDown ? chords.release(index) : chords.press(index, Microseconds{now}));
    pressed[index] += wasDown ? 0 : 1;
  }
  take(chords.endWait());
  for (std::uint8_t button = 0; button < 6; ++button) {
    const int chord = button < 2 ? begun[kChordOfFirstTwo] : button < 4 ? begun[kChordOfSecondTwo] : 0;
    RC_ASSERT(begun[button] + chord == pressed[button]);
    if (chords.isDown(button))
      take(chords.release(button));
  }
  for (const bool still : plays) RC_ASSERT(!still);
}

}  // namespace
}  // namespace veltrix
