#include "driver/engine/elapsed.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

namespace veltrix {
namespace {

using std::chrono::hours;
using std::chrono::milliseconds;

constexpr Microseconds kEarliest{std::numeric_limits<std::int64_t>::min()};

TEST(Elapsed, IsTheTimeBetween) {
  EXPECT_EQ(elapsed(milliseconds(5), milliseconds(12)), milliseconds(7));
  EXPECT_EQ(elapsed(milliseconds(-5), milliseconds(12)), milliseconds(17));
}

TEST(Elapsed, NeverRunsBack) {
  EXPECT_EQ(elapsed(milliseconds(12), milliseconds(5)), milliseconds(0));
  EXPECT_EQ(elapsed(kNever, kEarliest), milliseconds(0));
}

TEST(Elapsed, EndsAtALongTime) {
  EXPECT_EQ(elapsed(milliseconds(0), hours(2)), hours(1));
  EXPECT_EQ(elapsed(kEarliest, kNever), hours(1));
}

TEST(After, EndsAtNever) {
  EXPECT_EQ(after(milliseconds(5), milliseconds(7)), milliseconds(12));
  EXPECT_EQ(after(kNever - milliseconds(1), milliseconds(7)), kNever);
  EXPECT_EQ(after(kNever, milliseconds(0)), kNever);
}

RC_GTEST_PROP(Elapsed, IsBoundedForAllTimes, (std::int64_t from, std::int64_t to)) {
  const Microseconds time = elapsed(Microseconds(from), Microseconds(to));
  RC_ASSERT(time >= Microseconds::zero());
  RC_ASSERT(time <= kLongTime);
}

}  // namespace
}  // namespace veltrix
