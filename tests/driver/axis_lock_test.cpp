#include "driver/engine/axis_lock.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

namespace veltrix {
namespace {

constexpr std::uint16_t kResolution = 400;  // 1 mm is 15.7 counts

TEST(AxisLock, KeepsToTheAxisOfTheFirstMovement) {
  AxisLock lock(kResolution);
  EXPECT_EQ(lock.keep({1, -5}), (BallCounts{0, -5}));
  EXPECT_EQ(lock.keep({2, -5}), (BallCounts{0, -5}));
}

TEST(AxisLock, ADiagonalGoesSideways) {
  AxisLock lock(kResolution);
  EXPECT_EQ(lock.keep({-3, 3}), (BallCounts{-3, 0}));
}

TEST(AxisLock, StaysOnItsAxisWhileTheOtherOneWinsOnlyABit) {
  AxisLock lock(kResolution);
  lock.keep({5, 0});
  for (int step = 0; step < 1000; ++step) EXPECT_EQ(lock.keep({10, 19}), (BallCounts{10, 0}));
}

TEST(AxisLock, ChangesWhenTheOtherAxisClearlyWins) {
  AxisLock lock(kResolution);
  for (int step = 0; step < 100; ++step) lock.keep({5, 1});
  int dropped = 0;
  while (lock.keep({0, 1}) == BallCounts{}) ++dropped;
  EXPECT_GT(dropped, 8) << "half a millimetre to the side is a slip";
  EXPECT_LT(dropped, 32) << "two millimetres are meant";
  EXPECT_EQ(lock.keep({0, 7}), (BallCounts{0, 7}));
}

TEST(AxisLock, ChangesBackTheSameWay) {
  AxisLock lock(kResolution);
  for (int step = 0; step < 100; ++step) lock.keep({1, 5});
  for (int step = 0; step < 100; ++step) lock.keep({1, 0});
  EXPECT_EQ(lock.keep({7, 0}), (BallCounts{7, 0}));
}

TEST(AxisLock, TremblingAcrossTheAxisNeverChangesIt) {
  AxisLock lock(kResolution);
  lock.keep({1, 0});
  for (int step = 0; step < 1000; ++step) EXPECT_EQ(lock.keep({0, step % 2 == 0 ? 1 : -1}), BallCounts{});
}

TEST(AxisLock, DecidesAnewAfterRelease) {
  AxisLock lock(kResolution);
  lock.keep({100, 0});
  lock.release();
  EXPECT_EQ(lock.keep({1, 2}), (BallCounts{0, 2}));
}

TEST(AxisLock, ChangesAfterTheSameWayOfTheBallWhateverTheSensor) {
  double way[2] = {};
  for (const int fineness : {1, 4}) {
    AxisLock lock(static_cast<std::uint16_t>(kResolution * fineness));
    lock.keep({100 * fineness, 0});
    int dropped = 0;
    while (lock.keep({0, 1}) == BallCounts{}) ++dropped;
    way[fineness / 4] = static_cast<double>(dropped) / fineness;
  }
  EXPECT_NEAR(way[0], way[1], 1.0);
}

RC_GTEST_PROP(AxisLock, GivesOneAxisUnchangedAndNothingOfTheOther, ()) {
  AxisLock lock(*rc::gen::arbitrary<std::uint16_t>());
  for (int step = 0; step < 50; ++step) {
    const BallCounts counts{*rc::gen::inRange(-kMostCounts, kMostCounts + 1), *rc::gen::inRange(-20, 21)};
    const BallCounts kept = lock.keep(counts);
    RC_ASSERT(kept == (BallCounts{counts.x, 0}) || kept == (BallCounts{0, counts.y}));
  }
}

}  // namespace
}  // namespace veltrix
