#include "pane/slider_positions.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cmath>
#include <limits>

namespace veltrix {
namespace {

TEST(SliderPositions, AccelerationOfOneIsPositionFifty) {
  EXPECT_EQ(accelerationToPosition(1.0), 50);
}

TEST(SliderPositions, AccelerationIsTruncatedNotRounded) {
  EXPECT_EQ(accelerationToPosition(0.999), 49);
}

TEST(SliderPositions, NegativeAccelerationTruncatesTowardZero) {
  EXPECT_EQ(accelerationToPosition(-0.999), -49);
}

TEST(SliderPositions, AccelerationOutOfRangeSaturates) {
  EXPECT_EQ(accelerationToPosition(1e300), std::numeric_limits<std::int32_t>::max());
  EXPECT_EQ(accelerationToPosition(-1e300), std::numeric_limits<std::int32_t>::min());
  EXPECT_EQ(accelerationToPosition(std::numeric_limits<double>::infinity()),
            std::numeric_limits<std::int32_t>::max());
  EXPECT_EQ(accelerationToPosition(std::nan("")), 0);
}

TEST(SliderPositions, PositionThirtySevenIsSinglePrecisionThreeQuarters) {
  EXPECT_EQ(positionToAcceleration(37), static_cast<double>(0.74F));
  EXPECT_NE(positionToAcceleration(37), 0.74);
}

TEST(SliderPositions, SteadyPositionsAreThoseThatComeBack) {
  const auto steady = steadyAccelerationPositions(kWidestAccelerationPosition);
  std::size_t next = 0;
  for (int position = 0; position <= kWidestAccelerationPosition; ++position) {
    const bool comesBack = accelerationToPosition(positionToAcceleration(position)) == position;
    const bool listed = next < steady.size() && steady[next] == position;
    EXPECT_EQ(listed, comesBack) << position;
    next += listed ? 1 : 0;
  }
  EXPECT_EQ(next, steady.size());
}

TEST(SliderPositions, FourIsNotSteadyButFiveIs) {
  const auto steady = steadyAccelerationPositions(kLargestAccelerationPosition);
  EXPECT_EQ(nearestPosition(steady, 4), 5);
  EXPECT_EQ(nearestPosition(steady, 37), 37);
  EXPECT_EQ(nearestPosition(steady, 50), 50);
  EXPECT_EQ(steady.front(), 0);
  EXPECT_EQ(steady.back(), kLargestAccelerationPosition);
}

TEST(SliderPositions, SpeedRestsOnTwentyOneDetents) {
  const auto positions = speedPositions();
  ASSERT_EQ(positions.size(), 21U);
  EXPECT_EQ(positions.front(), 0);
  EXPECT_EQ(positions.back(), 100);
  EXPECT_EQ(nearestPosition(positions, 42), 40);
  EXPECT_EQ(nearestPosition(positions, 43), 45);
}

TEST(SliderPositions, NearestOfTwoEquallyNearIsTheLarger) {
  EXPECT_EQ(nearestPosition({0, 4}, 2), 4);
  EXPECT_EQ(nearestPosition({0, 4}, 9), 4);
  EXPECT_EQ(nearestPosition({2, 4}, -9), 2);
  EXPECT_EQ(nearestPosition({}, 3), 3);
}

TEST(SliderPositions, StepsGoFromPositionToPositionAndStopAtTheEnds) {
  const std::vector<int> positions = {0, 5, 7, 9};
  EXPECT_EQ(stepPosition(positions, 5, 1), 7);
  EXPECT_EQ(stepPosition(positions, 5, -1), 0);
  EXPECT_EQ(stepPosition(positions, 6, 1), 7);
  EXPECT_EQ(stepPosition(positions, 6, -1), 5);
  EXPECT_EQ(stepPosition(positions, 0, -1), 0);
  EXPECT_EQ(stepPosition(positions, 9, 3), 9);
  EXPECT_EQ(stepPosition(positions, 20, -1), 9);
  EXPECT_EQ(stepPosition(positions, -3, 1), 0);
  EXPECT_EQ(stepPosition(positions, 0, 2), 7);
  EXPECT_EQ(stepPosition(positions, 3, 0), 3);
  EXPECT_EQ(stepPosition({}, 3, -2), 1);
}

TEST(SliderPositions, StepsStopAtTheLargestAndSmallestNumbers) {
  constexpr int kSmallest = std::numeric_limits<int>::min();
  constexpr int kLargest = std::numeric_limits<int>::max();
  EXPECT_EQ(stepPosition({}, kLargest, 1), kLargest);
  EXPECT_EQ(stepPosition({}, kSmallest, -1), kSmallest);
}

TEST(SliderPositions, UsualScrollAmountsKeepTheUsualRange) {
  EXPECT_EQ(scrollSpeedRange(1), (PositionRange{1, 20}));
  EXPECT_EQ(scrollSpeedRange(20), (PositionRange{1, 20}));
}

TEST(SliderPositions, ForeignScrollAmountsWidenTheRange) {
  EXPECT_EQ(scrollSpeedRange(0), (PositionRange{0, 20}));
  EXPECT_EQ(scrollSpeedRange(-4), (PositionRange{-4, 20}));
  EXPECT_EQ(scrollSpeedRange(300), (PositionRange{1, 300}));
}

TEST(SliderPositions, TheUsualRangeHasATickAtEveryAmount) {
  EXPECT_EQ(tickDistance({1, 20}), 1);
  EXPECT_EQ(tickDistance({0, 20}), 1);
}

TEST(SliderPositions, AWideRangeHasFewTicks) {
  EXPECT_EQ(tickDistance({1, 300}), 6);
  EXPECT_EQ(tickDistance({std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}), 85899346);
}

TEST(SliderPositions, LargeFactorsWidenTheAccelerationSliderUpToTheRecordsLimit) {
  EXPECT_EQ(largestAccelerationPosition(50), kLargestAccelerationPosition);
  EXPECT_EQ(largestAccelerationPosition(150), 150);
  EXPECT_EQ(largestAccelerationPosition(2000), kWidestAccelerationPosition);
  EXPECT_EQ(largestAccelerationPosition(-7), kLargestAccelerationPosition);
}

RC_GTEST_PROP(SliderPositions, ASteadyPositionNeverCreeps, ()) {
  const auto steady = steadyAccelerationPositions(kWidestAccelerationPosition);
  int position = nearestPosition(steady, *rc::gen::inRange(-10, 300));
  const int first = position;
  for (int round = 0; round < 5; ++round) {
    position = nearestPosition(steady, accelerationToPosition(positionToAcceleration(position)));
    RC_ASSERT(position == first);
  }
}

}  // namespace
}  // namespace veltrix
