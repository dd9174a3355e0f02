#include "helper/keeper.h"

#include <gtest/gtest.h>

namespace veltrix {
namespace {

using std::chrono::milliseconds;

TEST(Keeper, ASuccessorComesAtOnceAndLaterOnesEverMoreSlowly) {
  EXPECT_EQ(Keeper::delayAfter(0), milliseconds(100));
  EXPECT_EQ(Keeper::delayAfter(1), milliseconds(200));
  EXPECT_EQ(Keeper::delayAfter(9), milliseconds(51'200));
  EXPECT_EQ(Keeper::delayAfter(10), milliseconds(60'000));
  EXPECT_EQ(Keeper::delayAfter(4'000'000'000), milliseconds(60'000));
}

}  // namespace
}  // namespace veltrix
