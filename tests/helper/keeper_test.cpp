#include "helper/keeper.h"

#include <gtest/gtest.h>

namespace veltrix {
namespace {

using std::chrono::milliseconds;

TEST(Keeper, ASuccessorComesAtOnceAndLaterOnesEverMoreSlowly) {
  EXPECT_EQ(Keeper::delayAfter(0), milliseconds(100));
  EXPECT_EQ(Keeper::delayAfter(1), milliseconds(200));
  EXPECT_EQ(Keeper::delayAfter(20), milliseconds(2'100));
  EXPECT_EQ(Keeper::delayAfter(599), milliseconds(60'000));
  EXPECT_EQ(Keeper::delayAfter(600), milliseconds(60'000));
  EXPECT_EQ(Keeper::delayAfter(4'000'000'000), milliseconds(60'000));
}

}  // namespace
}  // namespace veltrix
