#include "driver/engine/scroll_inertia.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <cmath>

namespace veltrix {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr ScrollParameters kFactory{60, 110, 250, 90, 1};
constexpr ScrollWay kUp{false, false};
constexpr ScrollWay kDown{false, true};
constexpr ScrollWay kRight{true, false};
constexpr double kUnitsPerLine = 40.0;

// Inertia after two detents, `apart` from each other, the later one at time 0.
ScrollInertia turnedTwice(const ScrollParameters& parameters = kFactory,
                          Microseconds apart = milliseconds(40), std::int32_t lines = 3,
                          bool enabled = true) {
  ScrollInertia inertia;
  inertia.configure(enabled, parameters, lines);
  inertia.turned(-apart, kUp, 120);
  inertia.turned(milliseconds(0), kUp, 120);
  return inertia;
}

struct Rolled {
  double lines = 0.0;
  Microseconds end{};
  std::int64_t most = 0;  // units of one call
  int calls = 0;
};

// Lets it roll until it ends by itself, or for a minute.
Rolled rollOut(ScrollInertia& inertia) {
  Rolled rolled;
  while (inertia.deadline() < seconds(60)) {
    rolled.end = inertia.deadline();
    const std::int64_t units = inertia.expire(rolled.end);
    rolled.lines += static_cast<double>(units) / kUnitsPerLine;
    rolled.most = std::max(rolled.most, units);
    ++rolled.calls;
  }
  return rolled;
}

// What the parameters mean, in plain arithmetic: how many lines at a time in ms since the roll began.
double linesByDefinition(double lines, double apart, const ScrollParameters& parameters, double time) {
  double sum = 0.0;
  double begin = 0.0;
  while (true) {
    lines *= parameters.countDecay / 100.0;
    apart *= parameters.timeDecay / 100.0;
    if (lines < parameters.countStop || apart > parameters.timeStop)
      return sum;
    if (time < begin + apart)
      return sum + lines * (time - begin) / apart;
    sum += lines;
    begin += apart;
  }
}

TEST(ScrollInertia, DoesNothingUnlessItIsOn) {
  ScrollInertia inertia = turnedTwice(kFactory, milliseconds(40), 3, false);
  EXPECT_EQ(inertia.deadline(), kNever);
  EXPECT_EQ(inertia.expire(seconds(1)), 0);
}

TEST(ScrollInertia, BeginsAfterTurnsThatAreNoFurtherApartThanTheTriggerTime) {
  EXPECT_NE(turnedTwice(kFactory, milliseconds(60)).deadline(), kNever);
  EXPECT_EQ(turnedTwice(kFactory, milliseconds(61)).deadline(), kNever);
}

TEST(ScrollInertia, OneTurnIsNotEnough) {
  ScrollInertia inertia;
  inertia.configure(true, kFactory, 3);
  inertia.turned(milliseconds(0), kUp, 120);
  EXPECT_EQ(inertia.deadline(), kNever);
}

TEST(ScrollInertia, WaitsUntilTheWheelPauses) {
  EXPECT_EQ(turnedTwice(kFactory, milliseconds(20)).deadline(), milliseconds(40))
      << "twice the time between turns";
  EXPECT_EQ(turnedTwice(kFactory, milliseconds(50)).deadline(), milliseconds(60))
      << "at most the trigger time";
  ScrollInertia inertia = turnedTwice();
  EXPECT_EQ(inertia.expire(milliseconds(59)), 0);
  inertia.turned(milliseconds(45), kUp, 120);
  EXPECT_EQ(inertia.deadline(), milliseconds(105)) << "the wheel goes on";
}

TEST(ScrollInertia, DoesNotBeginWhenTheWheelSlowsDownBeforeItStops) {
  ScrollInertia inertia = turnedTwice();
  inertia.turned(milliseconds(70), kUp, 120);
  EXPECT_EQ(inertia.deadline(), kNever);
}

TEST(ScrollInertia, RollsAsFarAsItsStepsSay) {
  ScrollInertia inertia = turnedTwice();
  const Rolled rolled = rollOut(inertia);
  EXPECT_NEAR(rolled.lines, 27.0 * (1.0 - std::pow(0.9, 10.0)), 1.0 / kUnitsPerLine)
      << "10 steps from 2.7 lines";
  const double duration = 440.0 * (std::pow(1.1, 10.0) - 1.0);
  EXPECT_NEAR(static_cast<double>(rolled.end.count()) / 1000.0, 60.0 + duration, 8.0);
}

TEST(ScrollInertia, FollowsItsDefinitionAtEveryMoment) {
  for (const int apart : {10, 25, 40, 60}) {
    ScrollInertia inertia = turnedTwice(kFactory, milliseconds(apart));
    const Microseconds begin = inertia.deadline();
    double lines = 0.0;
    for (Microseconds now = begin; inertia.deadline() != kNever; now = inertia.deadline()) {
      lines += static_cast<double>(inertia.expire(now)) / kUnitsPerLine;
      const double time = static_cast<double>((now - begin).count()) / 1000.0;
      EXPECT_NEAR(lines, linesByDefinition(3.0, apart, kFactory, time), 1.0 / kUnitsPerLine)
          << apart << ", " << time;
    }
    EXPECT_GT(lines, 17.0);
  }
}

TEST(ScrollInertia, SpreadsAStepOverItsTime) {
  ScrollInertia inertia = turnedTwice();
  const Rolled rolled = rollOut(inertia);
  EXPECT_LE(rolled.most, 20) << "108 units in 44 ms are 19.6 in 8 ms";
  EXPECT_GE(rolled.calls, 80);
}

TEST(ScrollInertia, StopsWhenTheNextStepWouldTakeLongerThanTimeStop) {
  ScrollInertia inertia = turnedTwice({60, 200, 160, 100, 1});
  const Rolled rolled = rollOut(inertia);  // 80 and 160 ms
  EXPECT_NEAR(rolled.lines, 6.0, 1e-9);
  ScrollInertia none = turnedTwice({60, 200, 79, 100, 1});
  EXPECT_NEAR(rollOut(none).lines, 0.0, 1e-9);
}

TEST(ScrollInertia, StopsWhenTheNextStepWouldBeSmallerThanCountStop) {
  ScrollInertia inertia = turnedTwice({60, 100, 250, 50, 2}, milliseconds(40), 8);
  EXPECT_NEAR(rollOut(inertia).lines, 6.0, 1e-9) << "4 and 2";
  ScrollInertia none = turnedTwice({60, 100, 250, 50, 5}, milliseconds(40), 8);
  EXPECT_NEAR(rollOut(none).lines, 0.0, 1e-9);
}

TEST(ScrollInertia, RollsOnWithADetentOfASingleLineToo) {
  ScrollInertia inertia = turnedTwice(kFactory, milliseconds(40), 1);
  EXPECT_NEAR(rollOut(inertia).lines, 9.0 * (1.0 - std::pow(0.9, 6.0)), 1.0 / kUnitsPerLine)
      << "6 steps, down to 0.53";
  ScrollInertia strict = turnedTwice({60, 110, 250, 90, 2}, milliseconds(40), 1);
  EXPECT_NEAR(rollOut(strict).lines, 0.0, 1e-9) << "more than a line was asked for";
}

TEST(ScrollInertia, ATurnTheOtherWayStopsItAtOnce) {
  ScrollInertia inertia = turnedTwice();
  inertia.expire(milliseconds(100));
  inertia.turned(milliseconds(105), kDown, 120);
  EXPECT_EQ(inertia.deadline(), kNever);
  EXPECT_EQ(inertia.expire(milliseconds(200)), 0);
}

TEST(ScrollInertia, ATurnAlongTheOtherAxisStopsIt) {
  ScrollInertia inertia = turnedTwice();
  inertia.expire(milliseconds(100));
  inertia.turned(milliseconds(105), kRight, 120);
  EXPECT_EQ(inertia.deadline(), kNever);
}

TEST(ScrollInertia, TurningBackAndForthNeverStartsIt) {
  ScrollInertia inertia;
  inertia.configure(true, kFactory, 3);
  for (int turn = 0; turn < 50; ++turn) {
    inertia.turned(milliseconds(20 * turn), turn % 2 == 0 ? kUp : kDown, 120);
    EXPECT_EQ(inertia.deadline(), kNever);
  }
}

TEST(ScrollInertia, StopEndsItAtOnceAndForgetsTheTurns) {
  ScrollInertia inertia = turnedTwice();
  inertia.expire(milliseconds(100));
  inertia.stop();
  EXPECT_EQ(inertia.deadline(), kNever);
  EXPECT_EQ(inertia.expire(milliseconds(200)), 0);
  inertia.turned(milliseconds(210), kUp, 120);
  EXPECT_EQ(inertia.deadline(), kNever);
}

TEST(ScrollInertia, StopEndsWaitingToo) {
  ScrollInertia inertia = turnedTwice();
  inertia.stop();
  EXPECT_EQ(inertia.expire(milliseconds(100)), 0);
}

TEST(ScrollInertia, ASingleTurnTheSameWayLetsItRollOn) {
  ScrollInertia inertia = turnedTwice();
  double lines = static_cast<double>(inertia.expire(milliseconds(100))) / kUnitsPerLine;
  inertia.turned(milliseconds(105), kUp, 120);
  lines += rollOut(inertia).lines;
  EXPECT_NEAR(lines, 17.6, 0.05);
}

TEST(ScrollInertia, QuickTurnsTheSameWayTakeItsPlace) {
  ScrollInertia inertia = turnedTwice();
  inertia.expire(milliseconds(100));
  inertia.turned(milliseconds(105), kUp, 120);
  inertia.turned(milliseconds(125), kUp, 120);
  EXPECT_EQ(inertia.deadline(), milliseconds(165));
  EXPECT_EQ(inertia.expire(milliseconds(164)), 0) << "while the wheel leads, nothing rolls";
}

TEST(ScrollInertia, LateCallsLoseNothing) {
  ScrollInertia inertia = turnedTwice();
  double lines = 0.0;
  while (inertia.deadline() != kNever)
    lines += static_cast<double>(inertia.expire(inertia.deadline() + milliseconds(90))) / kUnitsPerLine;
  EXPECT_NEAR(lines, 17.6, 0.05);
}

TEST(ScrollInertia, AVeryLateCallDoesNotMakeThePageJump) {
  ScrollInertia inertia = turnedTwice();
  inertia.expire(milliseconds(100));
  EXPECT_LE(inertia.expire(seconds(30)), 20);
  EXPECT_GT(rollOut(inertia).lines, 10.0) << "it goes on from where it was";
}

TEST(ScrollInertia, ConfiguringStopsIt) {
  ScrollInertia inertia = turnedTwice();
  inertia.expire(milliseconds(100));
  inertia.configure(true, kFactory, 3);
  EXPECT_EQ(inertia.deadline(), kNever);
}

TEST(ScrollInertia, WithoutTriggerTimeNothingRollsOn) {
  EXPECT_EQ(turnedTwice({0, 110, 250, 90, 1}, milliseconds(0)).deadline(), kNever);
  EXPECT_EQ(turnedTwice({-5, 110, 250, 90, 1}, milliseconds(0)).deadline(), kNever);
}

TEST(ScrollInertia, StepsThatWouldComeSoonerOrGrowKeepTheirSize) {
  ScrollInertia inertia = turnedTwice({60, 1, 250, 5000, 1});
  const Rolled rolled = rollOut(inertia);
  EXPECT_NEAR(rolled.lines, 750.0, 1e-9) << "3 lines every 40 ms for 10 s";
  EXPECT_LE(rolled.most, 24);
}

TEST(ScrollInertia, LastsTenSecondsAtTheMost) {
  for (const std::int32_t countStop : {0, -1, std::numeric_limits<std::int32_t>::min()}) {
    ScrollInertia inertia = turnedTwice({60, 100, std::numeric_limits<std::int32_t>::max(), 100, countStop});
    EXPECT_LE(rollOut(inertia).end, seconds(10) + milliseconds(60 + 8));
  }
}

TEST(ScrollInertia, TurnsOfOneTimeAreTakenAsTheQuickestStep) {
  ScrollInertia inertia = turnedTwice(kFactory, milliseconds(0));
  const Rolled rolled = rollOut(inertia);
  EXPECT_NEAR(rolled.lines, 17.6, 0.05);
  EXPECT_GE(rolled.end, milliseconds(100));
}

RC_GTEST_PROP(ScrollInertia, AnyParametersAreBoundedInTimeAndAmount, ()) {
  const auto any = rc::gen::oneOf(
      rc::gen::arbitrary<std::int32_t>(), rc::gen::inRange(0, 300),
      rc::gen::element(std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max()));
  const ScrollParameters parameters{*any, *any, *any, *any, *any};
  const std::int32_t lines = *rc::gen::inRange(1, 32769);
  ScrollInertia inertia = turnedTwice(parameters, milliseconds(*rc::gen::inRange(0, 300)), lines);
  const Rolled rolled = rollOut(inertia);
  RC_ASSERT(rolled.end <= seconds(11) + milliseconds(8));
  RC_ASSERT(rolled.most >= 0);
  RC_ASSERT(rolled.most <= lines * 40 + 1);
  RC_ASSERT(rolled.calls <= 1300);
}

RC_GTEST_PROP(ScrollInertia, AnyOrderOfCallsIsBounded, ()) {
  ScrollInertia inertia;
  inertia.configure(true, kFactory, 3);
  for (int call = 0; call < 60; ++call) {
    const Microseconds time(
        *rc::gen::oneOf(rc::gen::arbitrary<std::int64_t>(), rc::gen::inRange<std::int64_t>(0, 1000000)));
    if (*rc::gen::arbitrary<bool>())
      inertia.turned(time, *rc::gen::element(kUp, kUp, kDown, kRight), *rc::gen::inRange(1, 500));
    const std::int64_t units = inertia.expire(time);
    RC_ASSERT(units >= 0);
    RC_ASSERT(units <= 120 * 20);
  }
}

}  // namespace
}  // namespace veltrix
