#include <gtest/gtest.h>

#include "tests/driver/wheel_scroll_units.h"

namespace veltrix {
namespace {

using std::chrono::milliseconds;

// The wheel after two quick turns, the later one at 0 ms.
WheelScroll turnedQuickly(DriverRecord record, std::int32_t wheel, std::int32_t hwheel) {
  record.inertialScroll = 1;
  WheelScroll scroll = scrollOf(record);
  Output output;
  scroll.turn(milliseconds(-40), wheel, hwheel, output);
  scroll.turn(milliseconds(0), wheel, hwheel, output);
  return scroll;
}

Units rolledOut(WheelScroll& scroll) {
  Units sum{};
  while (scroll.deadline() != kNever) {
    Output output;
    scroll.expire(scroll.deadline(), output);
    const Units units = unitsOf(output);
    sum = {sum[0] + units[0], sum[1] + units[1]};
  }
  return sum;
}

TEST(WheelScrollInertia, RollsOnTheWayThatItScrolled) {
  DriverRecord inverted = recordOf(3);
  inverted.invertWheel = 1;
  WheelScroll up = turnedQuickly(recordOf(3), 120, 0);
  WheelScroll down = turnedQuickly(inverted, 120, 0);
  WheelScroll left = turnedQuickly(recordOf(3, 22), 120, 0);
  WheelScroll right = turnedQuickly(recordOf(3), 10, 120);
  EXPECT_EQ(rolledOut(up), (Units{703, 0}));
  EXPECT_EQ(rolledOut(down), (Units{-703, 0}));
  EXPECT_EQ(rolledOut(left), (Units{0, -703}));
  EXPECT_EQ(rolledOut(right), (Units{0, 703}));
}

TEST(WheelScrollInertia, RollsOnWithWholeDetentsBesideTheUnits) {
  WheelScroll scroll = turnedQuickly(recordOf(3), 120, 0);
  int detents = 0;
  while (scroll.deadline() != kNever) {
    Output output;
    scroll.expire(scroll.deadline(), output);
    for (const OutputEvent& event : output.events()) detents += event.code == REL_WHEEL ? event.value : 0;
  }
  EXPECT_EQ(detents, 703 / 120);
}

TEST(WheelScrollInertia, DoesNotRollOnUnlessTheRecordSaysSo) {
  WheelScroll scroll = scrollOf(recordOf(3));
  Output output;
  for (int time = 0; time < 200; time += 20) scroll.turn(milliseconds(time), 120, 0, output);
  EXPECT_EQ(scroll.deadline(), kNever);
}

TEST(WheelScrollInertia, StopRestAndANewRecordEndWhatRollsOn) {
  WheelScroll stopped = turnedQuickly(recordOf(3), 120, 0);
  WheelScroll rested = turnedQuickly(recordOf(3), 120, 0);
  WheelScroll configured = turnedQuickly(recordOf(3), 120, 0);
  stopped.stop();
  rested.rest();
  configured.configure(recordOf(3), kFactory);
  EXPECT_EQ(stopped.deadline(), kNever);
  EXPECT_EQ(rested.deadline(), kNever);
  EXPECT_EQ(configured.deadline(), kNever);
}

TEST(WheelScrollInertia, ATurnTheOtherWayEndsWhatRollsOnAndScrolls) {
  WheelScroll scroll = turnedQuickly(recordOf(3), 120, 0);
  Output output;
  scroll.expire(milliseconds(100), output);
  output.clear();
  scroll.turn(milliseconds(105), -120, 0, output);
  EXPECT_EQ(unitsOf(output), (Units{-120, 0}));
  EXPECT_EQ(scroll.deadline(), kNever);
}

}  // namespace
}  // namespace veltrix
