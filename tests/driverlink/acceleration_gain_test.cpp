#include "driverlink/acceleration_gain.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cmath>
#include <limits>

namespace veltrix {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNotANumber = std::numeric_limits<double>::quiet_NaN();

static_assert(accelerationGain(80.0, 0.0) == 1.0, "the driver may evaluate it at build time");

double anySpeed() {
  return *rc::gen::inRange(0, 5000) * 0.37;
}
double anyFactor() {
  return *rc::gen::inRange(0, 401) * 0.01;
}

RC_GTEST_PROP(AccelerationGain, FactorZeroNeverAccelerates, ()) {
  RC_ASSERT(!(accelerationGain(anySpeed(), 0.0) > 1.0));
  RC_ASSERT(!(accelerationGain(anySpeed(), 0.0) < 1.0));
}

RC_GTEST_PROP(AccelerationGain, StaysBetweenOneAndOnePlusFactor, ()) {
  const double factor = anyFactor();
  const double gain = accelerationGain(anySpeed(), factor);
  RC_ASSERT(gain >= 1.0);
  RC_ASSERT(gain <= 1.0 + factor);
}

RC_GTEST_PROP(AccelerationGain, GrowsWithSpeedAndFactor, ()) {
  const double speed = anySpeed();
  const double factor = anyFactor();
  const double gain = accelerationGain(speed, factor);
  RC_ASSERT(accelerationGain(speed + anySpeed(), factor) >= gain);
  RC_ASSERT(accelerationGain(speed, std::min(4.0, factor + anyFactor())) >= gain);
}

RC_GTEST_PROP(AccelerationGain, HasNoJumps, ()) {
  const double speed = anySpeed();
  const double factor = anyFactor();
  // The steepest slope of s^2 / (s^2 + k^2) is below 0.65 / k.
  const double step = 0.01;
  const double rise = accelerationGain(speed + step, factor) - accelerationGain(speed, factor);
  RC_ASSERT(rise <= factor * 0.65 / kHalfGainSpeed * step + 1e-12);
}

TEST(AccelerationGain, GivesHalfOfTheExtraAtTheHalfGainSpeed) {
  EXPECT_DOUBLE_EQ(accelerationGain(kHalfGainSpeed, 2.0), 2.0);
  EXPECT_DOUBLE_EQ(accelerationGain(kHalfGainSpeed, 0.5), 1.25);
}

TEST(AccelerationGain, LeavesSlowMovementAlone) {
  EXPECT_LT(accelerationGain(kHalfGainSpeed / 20, 1.0), 1.003);
  EXPECT_DOUBLE_EQ(accelerationGain(0.0, 4.0), 1.0);
}

TEST(AccelerationGain, SaturatesForAVeryFastBall) {
  EXPECT_NEAR(accelerationGain(kHalfGainSpeed * 1000, 3.0), 4.0, 1e-5);
  EXPECT_DOUBLE_EQ(accelerationGain(kInfinity, 3.0), 4.0);
  EXPECT_DOUBLE_EQ(accelerationGain(std::numeric_limits<double>::max(), 3.0), 4.0);
  EXPECT_DOUBLE_EQ(accelerationGain(std::numeric_limits<double>::denorm_min(), 3.0), 1.0);
}

TEST(AccelerationGain, TakesWildFactorsAsTheNearerEnd) {
  EXPECT_DOUBLE_EQ(accelerationGain(200.0, -1.0), 1.0);
  EXPECT_DOUBLE_EQ(accelerationGain(200.0, 9.0), accelerationGain(200.0, 4.0));
  EXPECT_DOUBLE_EQ(accelerationGain(200.0, kInfinity), accelerationGain(200.0, 4.0));
  EXPECT_DOUBLE_EQ(accelerationGain(200.0, kNotANumber), 1.0);
  EXPECT_DOUBLE_EQ(accelerationGain(kNotANumber, 2.0), 1.0);
}

}  // namespace
}  // namespace veltrix
