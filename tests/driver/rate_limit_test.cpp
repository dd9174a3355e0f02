#include "driver/rate_limit.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <chrono>

namespace veltrix {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

int taken(RateLimit& limit, Microseconds now, int attempts) {
  int count = 0;
  for (int i = 0; i < attempts; ++i) count += limit.take(now) ? 1 : 0;
  return count;
}

TEST(RateLimit, LetsABurstThroughAndNoMore) {
  RateLimit limit(20, 10);
  EXPECT_EQ(taken(limit, seconds(5), 100), 20);
}

TEST(RateLimit, GivesBackOneAtATime) {
  RateLimit limit(20, 10);
  taken(limit, seconds(5), 100);
  EXPECT_EQ(taken(limit, seconds(5) + milliseconds(99), 5), 0);
  EXPECT_EQ(taken(limit, seconds(5) + milliseconds(100), 5), 1);
  EXPECT_EQ(taken(limit, seconds(6) + milliseconds(100), 50), 10);
}

TEST(RateLimit, NeverGivesBackMoreThanTheBurst) {
  RateLimit limit(3, 1000);
  EXPECT_EQ(taken(limit, kNever, 10), 3);
}

RC_GTEST_PROP(RateLimit, NeverExceedsBurstAndRate, ()) {
  RateLimit limit(7, 100);
  const auto steps = *rc::gen::container<std::vector<unsigned>>(rc::gen::inRange(0U, 30000U));
  Microseconds now{*rc::gen::inRange(0, 1000000)};
  const Microseconds start = now;
  std::int64_t through = 0;
  for (const unsigned step : steps) {
    now += Microseconds(step);
    through += limit.take(now) ? 1 : 0;
  }
  RC_ASSERT(through <= 7 + (now - start).count() / 10000);
}

}  // namespace
}  // namespace veltrix
