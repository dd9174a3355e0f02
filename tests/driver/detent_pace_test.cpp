#include "driver/engine/detent_pace.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

namespace veltrix {
namespace {

using std::chrono::milliseconds;

DetentPace paceWithin(Microseconds longest) {
  DetentPace pace;
  pace.setLongest(longest);
  return pace;
}

TEST(DetentPace, IsTheTimeBetweenTwoDetents) {
  DetentPace pace = paceWithin(milliseconds(60));
  EXPECT_EQ(pace.turned(milliseconds(1000), 120), kNever) << "one turn has no pace";
  EXPECT_EQ(pace.turned(milliseconds(1050), 120), milliseconds(50));
  EXPECT_EQ(pace.turned(milliseconds(1080), 120), milliseconds(30));
}

TEST(DetentPace, IncludesTheLongestTime) {
  DetentPace pace = paceWithin(milliseconds(60));
  pace.turned(milliseconds(0), 120);
  EXPECT_EQ(pace.turned(milliseconds(60), 120), milliseconds(60));
  EXPECT_EQ(pace.turned(Microseconds(120001), 120), kNever);
}

TEST(DetentPace, BeginsANewRunAfterALongerTime) {
  DetentPace pace = paceWithin(milliseconds(60));
  pace.turned(milliseconds(0), 120);
  pace.turned(milliseconds(50), 120);
  EXPECT_EQ(pace.turned(milliseconds(150), 120), kNever);
  EXPECT_EQ(pace.turned(milliseconds(190), 120), milliseconds(40));
}

TEST(DetentPace, SeveralDetentsInOneReportShareItsTime) {
  DetentPace pace = paceWithin(milliseconds(60));
  pace.turned(milliseconds(0), 120);
  EXPECT_EQ(pace.turned(milliseconds(48), 360), milliseconds(16));
}

TEST(DetentPace, PartsOfADetentAreMeasuredByTheWholeOne) {
  DetentPace pace = paceWithin(milliseconds(60));
  for (int part = 0; part < 8; ++part) EXPECT_EQ(pace.turned(milliseconds(5 * part), 15), kNever) << part;
  EXPECT_EQ(pace.turned(milliseconds(40), 15), milliseconds(40));
  EXPECT_EQ(pace.turned(milliseconds(45), 15), milliseconds(40)) << "until the next one is complete";
}

TEST(DetentPace, PartsThatFollowQuicklyButSumUpSlowlyAreNotQuick) {
  DetentPace pace = paceWithin(milliseconds(60));
  for (int part = 0; part < 50; ++part) EXPECT_EQ(pace.turned(milliseconds(10 * part), 15), kNever) << part;
}

TEST(DetentPace, AHiResWheelThatSlowsDownIsNotQuickAnyMore) {
  DetentPace pace = paceWithin(milliseconds(60));
  for (int part = 0; part <= 8; ++part) pace.turned(milliseconds(5 * part), 15);
  EXPECT_EQ(pace.turned(milliseconds(90), 15), milliseconds(40));
  EXPECT_EQ(pace.turned(milliseconds(130), 15), kNever) << "90 ms and the detent is not complete";
}

TEST(DetentPace, RestEndsTheRun) {
  DetentPace pace = paceWithin(milliseconds(60));
  pace.turned(milliseconds(0), 120);
  pace.rest();
  EXPECT_EQ(pace.turned(milliseconds(10), 120), kNever);
}

RC_GTEST_PROP(DetentPace, IsWithinTheLongestTimeOrNever, ()) {
  const auto longest = milliseconds(*rc::gen::inRange(0, 1000));
  DetentPace pace = paceWithin(longest);
  for (int turn = 0; turn < 30; ++turn) {
    const std::int64_t time =
        *rc::gen::oneOf(rc::gen::arbitrary<std::int64_t>(), rc::gen::inRange<std::int64_t>(0, 1000));
    const Microseconds given = pace.turned(Microseconds(time), *rc::gen::inRange(1, 1 << 27));
    RC_ASSERT(given == kNever || (given >= Microseconds::zero() && given <= longest));
  }
}

}  // namespace
}  // namespace veltrix
