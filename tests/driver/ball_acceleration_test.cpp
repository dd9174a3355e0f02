#include "driver/engine/ball_acceleration.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cmath>

#include "driverlink/acceleration_gain.h"

namespace veltrix {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr std::uint16_t kResolution = 400;

BallAcceleration accelerationOf(double factor) {
  BallAcceleration acceleration(kResolution);
  acceleration.setFactor(factor);
  return acceleration;
}

TEST(BallAcceleration, IsNoneForFactorZero) {
  BallAcceleration acceleration = accelerationOf(0.0);
  for (int time = 0; time < 100; ++time)
    EXPECT_DOUBLE_EQ(acceleration.gain(milliseconds(time), {1000, 1000}), 1.0);
}

TEST(BallAcceleration, SettlesAtTheGainOfTheSpeed) {
  for (const int counts : {1, 5, 20, 100}) {
    BallAcceleration acceleration = accelerationOf(2.0);
    double gain = 0.0;
    for (int time = 0; time < 400; time += 4) gain = acceleration.gain(milliseconds(time), {0, -counts});
    const double speed = counts / 0.004 * 25.4 / kResolution;
    EXPECT_NEAR(gain, accelerationGain(speed, 2.0), 1e-3) << speed << " mm/s";
  }
}

TEST(BallAcceleration, IsTheSameInAllDirections) {
  BallAcceleration straight = accelerationOf(2.0);
  BallAcceleration slanted = accelerationOf(2.0);
  for (int time = 0; time < 100; time += 2)
    EXPECT_NEAR(straight.gain(milliseconds(time), {-50, 0}), slanted.gain(milliseconds(time), {30, 40}),
                1e-12);
}

TEST(BallAcceleration, CountsThatAlternateBetweenTheAxesAreOneSlantedMovement) {
  BallAcceleration together = accelerationOf(2.0);
  BallAcceleration inTurns = accelerationOf(2.0);
  double gain = 0.0;
  double gainInTurns = 0.0;
  for (int step = 0; step < 4000; ++step) {
    if (step % 2 == 0)
      gain = together.gain(Microseconds(step * 125), {1, 1});
    gainInTurns = inTurns.gain(Microseconds(step * 125), {step % 2, 1 - step % 2});
  }
  EXPECT_NEAR(gainInTurns, gain, 0.01);
}

TEST(BallAcceleration, FirstCountAfterAPauseIsSlow) {
  BallAcceleration acceleration = accelerationOf(2.0);
  EXPECT_NEAR(acceleration.gain(milliseconds(0), {1, 0}), 1.0, 0.01);
  for (int time = 0; time < 100; ++time) acceleration.gain(milliseconds(time), {30, 0});
  EXPECT_NEAR(acceleration.gain(seconds(2), {1, 0}), 1.0, 0.01);
}

TEST(BallAcceleration, FirstReportAfterAPauseCountsForTheSpeedThatFollows) {
  BallAcceleration acceleration = accelerationOf(2.0);
  acceleration.gain(seconds(1), {1, 0});
  acceleration.gain(seconds(9), {40, 0});
  BallAcceleration other = accelerationOf(2.0);
  other.gain(seconds(9), {1, 0});
  EXPECT_GT(acceleration.gain(seconds(9) + milliseconds(8), {40, 0}),
            other.gain(seconds(9) + milliseconds(8), {40, 0}) + 0.1);
}

TEST(BallAcceleration, ReportsOfOneTimeAreAsOneReport) {
  BallAcceleration split = accelerationOf(2.0);
  BallAcceleration whole = accelerationOf(2.0);
  for (int time = 0; time < 80; time += 8) {
    const double gain = whole.gain(milliseconds(time), {20, 0});
    const double first = split.gain(milliseconds(time), {10, 0});
    const double second = split.gain(milliseconds(time), {10, 0});
    EXPECT_NEAR((first + second) / 2.0, gain, 0.25);
  }
}

TEST(BallAcceleration, TimeThatRunsBackIsNoTime) {
  BallAcceleration acceleration = accelerationOf(2.0);
  acceleration.gain(milliseconds(10), {5, 0});
  const double gain = acceleration.gain(milliseconds(3), {5, 0});
  EXPECT_GE(gain, 1.0);
  EXPECT_LE(gain, 3.0);
}

TEST(BallAcceleration, RestForgetsTheSpeed) {
  BallAcceleration rested = accelerationOf(2.0);
  for (int time = 0; time < 100; ++time) rested.gain(milliseconds(time), {30, 0});
  rested.rest();
  BallAcceleration fresh = accelerationOf(2.0);
  EXPECT_DOUBLE_EQ(rested.gain(milliseconds(100), {9, 0}), fresh.gain(milliseconds(100), {9, 0}));
}

TEST(BallAcceleration, ChangesWithoutJumpsAsTheSpeedDoes) {
  BallAcceleration acceleration = accelerationOf(2.0);
  double last = acceleration.gain(milliseconds(0), {1, 0});
  for (int time = 1; time < 1000; ++time) {
    const double gain = acceleration.gain(milliseconds(time), {1 + time / 20, 0});
    EXPECT_LT(std::abs(gain - last), 0.07) << time;
    last = gain;
  }
}

RC_GTEST_PROP(BallAcceleration, AnythingGivesAGainOfTheCurve, ()) {
  const double factor = *rc::gen::inRange(0, 255) * 0.01;
  BallAcceleration acceleration(*rc::gen::arbitrary<std::uint16_t>());
  acceleration.setFactor(factor);
  for (int step = 0; step < 20; ++step) {
    const BallCounts counts{*rc::gen::inRange(-kMostCounts, kMostCounts + 1), *rc::gen::inRange(-3, 4)};
    const std::int64_t time =
        *rc::gen::oneOf(rc::gen::arbitrary<std::int64_t>(), rc::gen::just<std::int64_t>(0));
    const double gain = acceleration.gain(Microseconds(time), counts);
    RC_ASSERT(gain >= 1.0 - 1e-12);
    RC_ASSERT(gain <= 1.0 + factor + 1e-12);
  }
}

}  // namespace
}  // namespace veltrix
