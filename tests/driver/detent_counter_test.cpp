#include "driver/engine/detent_counter.h"

#include <gtest/gtest.h>

#include <limits>

namespace veltrix {
namespace {

TEST(DetentCounter, CountsWholeDetentsWhicheverWayTheyTurn) {
  DetentCounter counter;
  EXPECT_EQ(counter.turn(120), 1);
  EXPECT_EQ(counter.turn(-240), 2);
}

TEST(DetentCounter, AddsUpParts) {
  DetentCounter counter;
  EXPECT_EQ(counter.turn(50), 0);
  EXPECT_EQ(counter.turn(50), 0);
  EXPECT_EQ(counter.turn(50), 1);
  EXPECT_EQ(counter.turn(90), 1);
}

TEST(DetentCounter, TurnBackTakesAwayWhatWasLeft) {
  DetentCounter counter;
  EXPECT_EQ(counter.turn(100), 0);
  EXPECT_EQ(counter.turn(-100), 0);
  EXPECT_EQ(counter.turn(119), 0);
}

TEST(DetentCounter, OneReportCountsNoMoreThanAPersonTurns) {
  DetentCounter counter;
  EXPECT_EQ(counter.turn(std::numeric_limits<std::int32_t>::max()), DetentCounter::kMostDetents);
  EXPECT_EQ(counter.turn(std::numeric_limits<std::int32_t>::min()), DetentCounter::kMostDetents);
  EXPECT_LE(counter.turn(119), 1);
}

TEST(DetentCounter, RestForgetsParts) {
  DetentCounter counter;
  counter.turn(119);
  counter.rest();
  EXPECT_EQ(counter.turn(119), 0);
}

}  // namespace
}  // namespace veltrix
