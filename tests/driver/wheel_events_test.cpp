#include "driver/engine/wheel_events.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cstdlib>

namespace veltrix {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(WheelEvents, WritesADetentBothWays) {
  WheelEvents events;
  Output output;
  events.write(120, 0, output);
  EXPECT_THAT(output.events(),
              ElementsAre(OutputEvent{EV_REL, REL_WHEEL_HI_RES, 120}, OutputEvent{EV_REL, REL_WHEEL, 1}));
}

TEST(WheelEvents, WritesTheHorizontalWheel) {
  WheelEvents events;
  Output output;
  events.write(0, -240, output);
  EXPECT_THAT(output.events(),
              ElementsAre(OutputEvent{EV_REL, REL_HWHEEL_HI_RES, -240}, OutputEvent{EV_REL, REL_HWHEEL, -2}));
}

TEST(WheelEvents, WritesADetentWhenItIsWhole) {
  WheelEvents events;
  Output output;
  events.write(119, 0, output);
  EXPECT_THAT(output.events(), ElementsAre(OutputEvent{EV_REL, REL_WHEEL_HI_RES, 119}));
  output.clear();
  events.write(1, 0, output);
  EXPECT_THAT(output.events(),
              ElementsAre(OutputEvent{EV_REL, REL_WHEEL_HI_RES, 1}, OutputEvent{EV_REL, REL_WHEEL, 1}));
}

TEST(WheelEvents, WritesNothingForNothing) {
  WheelEvents events;
  Output output;
  events.write(0, 0, output);
  EXPECT_THAT(output.events(), IsEmpty());
}

TEST(WheelEvents, LeavesTheSyncToTheCaller) {
  WheelEvents events;
  Output output;
  events.write(1, 1, output);
  output.sync();
  EXPECT_EQ(output.events().size(), 3U);
}

TEST(WheelEvents, StopsAtTheMost) {
  WheelEvents events;
  Output output;
  events.write(std::numeric_limits<std::int64_t>::max(), std::numeric_limits<std::int64_t>::min(), output);
  EXPECT_EQ(output.events()[0].value, WheelEvents::kMostUnits);
  EXPECT_EQ(output.events()[2].value, -WheelEvents::kMostUnits);
}

TEST(WheelEvents, ForgetsHalfADetentAtRest) {
  WheelEvents events;
  Output output;
  events.write(119, 119, output);
  events.rest();
  output.clear();
  events.write(119, 119, output);
  EXPECT_EQ(output.events().size(), 2U);
}

RC_GTEST_PROP(WheelEvents, DetentsAreNeverAWholeOneAwayFromTheUnits, ()) {
  WheelEvents events;
  Output output;
  std::int64_t units = 0;
  std::int64_t detents = 0;
  for (int step = 0; step < 100; ++step) {
    output.clear();
    const int turned = *rc::gen::inRange(-500, 501);
    events.write(turned, 0, output);
    for (const OutputEvent& event : output.events())
      (event.code == REL_WHEEL ? detents : units) += event.value;
    RC_ASSERT(std::llabs(units - detents * 120) < 120);
  }
}

}  // namespace
}  // namespace veltrix
