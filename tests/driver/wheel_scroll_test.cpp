#include "driver/engine/wheel_scroll.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cstdlib>
#include <limits>

#include "tests/driver/wheel_scroll_units.h"

namespace veltrix {
namespace {

using std::chrono::milliseconds;
using ::testing::ElementsAre;

constexpr std::int32_t kLeast = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();

Units turned(WheelScroll& scroll, std::int32_t wheel, std::int32_t hwheel) {
  Output output;
  scroll.turn(milliseconds(1), wheel, hwheel, output);
  return unitsOf(output);
}

Units stepped(std::uint16_t command, std::int16_t lines) {
  WheelScroll scroll = scrollOf(recordOf(3));
  Output output;
  scroll.step(command, lines, output);
  return unitsOf(output);
}

Units rolled(WheelScroll& scroll, std::int32_t dx, std::int32_t dy) {
  Output output;
  scroll.roll(dx, dy, output);
  return unitsOf(output);
}

TEST(WheelScroll, IsAnOrdinaryMouseBeforeItIsConfigured) {
  WheelScroll scroll(kModel);
  EXPECT_EQ(turned(scroll, 120, -240), (Units{120, -240}));
}

TEST(WheelScroll, IsAnOrdinaryMouseWithAnEmptyRecord) {
  WheelScroll scroll = scrollOf({});
  EXPECT_EQ(turned(scroll, 120, -240), (Units{120, -240}));
}

TEST(WheelScroll, ThreeLinesAreADetentOfAnOrdinaryMouse) {
  WheelScroll scroll = scrollOf(recordOf(3));
  Output output;
  scroll.turn(milliseconds(1), 120, 0, output);
  EXPECT_THAT(output.events(),
              ElementsAre(OutputEvent{EV_REL, REL_WHEEL_HI_RES, 120}, OutputEvent{EV_REL, REL_WHEEL, 1}));
}

TEST(WheelScroll, ALineIsAThirdOfADetent) {
  WheelScroll scroll = scrollOf(recordOf(1));
  EXPECT_EQ(turned(scroll, 120, 0), (Units{40, 0}));
  scroll = scrollOf(recordOf(20));
  EXPECT_EQ(turned(scroll, -120, 0), (Units{-800, 0}));
}

TEST(WheelScroll, AmountCountsWithoutItsSign) {
  WheelScroll scroll = scrollOf(recordOf(-5));
  EXPECT_EQ(turned(scroll, 120, 0), (Units{200, 0}));
}

TEST(WheelScroll, AmountOfNoLinesIsOneSoThatTheWheelIsNeverDead) {
  WheelScroll scroll = scrollOf(recordOf(0));
  EXPECT_EQ(turned(scroll, 120, 0), (Units{40, 0}));
}

TEST(WheelScroll, PartsOfADetentAddUpExactly) {
  WheelScroll scroll = scrollOf(recordOf(1));
  std::int64_t units = 0;
  for (int part = 0; part < 120; ++part) units += turned(scroll, 1, 0)[0];
  EXPECT_EQ(units, 40);
}

TEST(WheelScroll, InvertingTurnsBothWheels) {
  DriverRecord record = recordOf(3);
  record.invertWheel = 1;
  WheelScroll scroll = scrollOf(record);
  EXPECT_EQ(turned(scroll, 120, 60), (Units{-120, -60}));
}

TEST(WheelScroll, InvertingTheThirdAxisTurnsBothWheels) {
  DriverRecord record = recordOf(3);
  record.axisFlags = kInvertZ;
  WheelScroll scroll = scrollOf(record);
  EXPECT_EQ(turned(scroll, 120, 60), (Units{-120, -60}));
}

TEST(WheelScroll, InvertedTwiceTurnsAsItWas) {
  DriverRecord record = recordOf(3);
  record.invertWheel = 1;
  record.axisFlags = kInvertZ;
  WheelScroll scroll = scrollOf(record);
  EXPECT_EQ(turned(scroll, 120, 60), (Units{120, 60}));
}

TEST(WheelScroll, CommandOfTheWheelSaysWhereTurningItUpGoes) {
  WheelScroll up = scrollOf(recordOf(3, 20));
  WheelScroll down = scrollOf(recordOf(3, 21));
  WheelScroll left = scrollOf(recordOf(3, 22));
  WheelScroll right = scrollOf(recordOf(3, 23));
  EXPECT_EQ(turned(up, 120, 0), (Units{120, 0}));
  EXPECT_EQ(turned(down, 120, 0), (Units{-120, 0}));
  EXPECT_EQ(turned(left, 120, 0), (Units{0, -120}));
  EXPECT_EQ(turned(right, 120, 0), (Units{0, 120}));
}

TEST(WheelScroll, CommandOfTheWheelLeavesTheHorizontalWheelAlone) {
  for (const std::uint16_t command : std::to_array<std::uint16_t>({20, 21, 22, 23})) {
    WheelScroll scroll = scrollOf(recordOf(3, command));
    EXPECT_EQ(turned(scroll, 0, 120), (Units{0, 120})) << command;
  }
}

TEST(WheelScroll, StepsGoWhereTheirCommandSays) {
  EXPECT_EQ(stepped(20, 3), (Units{120, 0}));
  EXPECT_EQ(stepped(21, 3), (Units{-120, 0}));
  EXPECT_EQ(stepped(22, 3), (Units{0, -120}));
  EXPECT_EQ(stepped(23, 3), (Units{0, 120}));
}

TEST(WheelScroll, StepsOfOtherCommandsAreNone) {
  for (const std::uint16_t command : std::to_array<std::uint16_t>({0, 19, 24, 65535}))
    EXPECT_EQ(stepped(command, 3), (Units{0, 0})) << command;
}

TEST(WheelScroll, StepsHaveTheirOwnAmount) {
  EXPECT_EQ(stepped(20, 1), (Units{40, 0}));
  EXPECT_EQ(stepped(20, -7), (Units{280, 0}));
  EXPECT_EQ(stepped(20, 0), (Units{40, 0})) << "never dead";
  EXPECT_EQ(stepped(21, std::numeric_limits<std::int16_t>::min()), (Units{-32767, 0}));
}

TEST(WheelScroll, StepsGoTheirWayWhateverTheDirectionOfTheWheel) {
  DriverRecord record = recordOf(3, 21);
  record.invertWheel = 1;
  WheelScroll scroll = scrollOf(record);
  Output output;
  scroll.step(20, 3, output);
  EXPECT_EQ(unitsOf(output), (Units{120, 0}));
}

TEST(WheelScroll, ThreeMillimetresOfBallAreADetent) {
  WheelScroll scroll = scrollOf(recordOf(3));
  // An inch of ball is 400 counts and 25.4 lines.
  EXPECT_EQ(rolled(scroll, 0, -400), (Units{1016, 0}));
  EXPECT_EQ(rolled(scroll, 400, 0), (Units{0, 1016}));
}

TEST(WheelScroll, BallFollowsTheAmountOfTheWheel) {
  WheelScroll scroll = scrollOf(recordOf(6));
  EXPECT_EQ(rolled(scroll, 0, 400), (Units{-2032, 0}));
}

TEST(WheelScroll, BallFollowsTheDirectionAndTheMounting) {
  DriverRecord record = recordOf(3, 21);
  record.invertWheel = 1;
  record.axisFlags = kSwapXY | kInvertX;
  WheelScroll scroll = scrollOf(record);
  EXPECT_EQ(rolled(scroll, 400, 0), (Units{1016, 0})) << "down as mounted";
  EXPECT_EQ(rolled(scroll, 0, 400), (Units{0, 1016})) << "to the left as mounted";
}

TEST(WheelScroll, CountsOfTheBallAddUpExactly) {
  WheelScroll scroll = scrollOf(recordOf(1));
  Units units{};
  for (int count = 0; count < 1200; ++count) {
    const Units step = rolled(scroll, 1, -1);
    units[0] += step[0];
    units[1] += step[1];
  }
  EXPECT_EQ(units, (Units{1016, 1016}));
}

TEST(WheelScroll, RestForgetsWhatIsLeft) {
  WheelScroll scroll = scrollOf(recordOf(1));
  turned(scroll, 2, 2);
  rolled(scroll, 1, 1);
  scroll.rest();
  EXPECT_EQ(turned(scroll, 2, 2), (Units{0, 0}));
  EXPECT_EQ(rolled(scroll, 1, 0), (Units{0, 0}));
}

RC_GTEST_PROP(WheelScroll, SumOfTurnsIsExactAtEveryMoment, ()) {
  const auto lines = *rc::gen::inRange<std::int16_t>(1, 21);
  WheelScroll scroll = scrollOf(recordOf(lines));
  std::int64_t input = 0;
  std::int64_t units = 0;
  for (int step = 0; step < 200; ++step) {
    const int wheel = *rc::gen::inRange(-130, 131);
    input += wheel;
    units += turned(scroll, wheel, 0)[0];
    RC_ASSERT(std::llabs(units * 3 - input * lines) < 3);
  }
}

RC_GTEST_PROP(WheelScroll, AnythingGivesBoundedEvents, ()) {
  DriverRecord record =
      recordOf(*rc::gen::arbitrary<std::int16_t>(), *rc::gen::inRange<std::uint16_t>(18, 26));
  record.axisFlags = *rc::gen::arbitrary<std::uint8_t>();
  record.invertWheel = *rc::gen::arbitrary<std::uint8_t>();
  WheelScroll scroll(DeviceModel{*rc::gen::arbitrary<std::uint16_t>()});
  scroll.configure(record, kFactory);
  Output output;
  for (int step = 0; step < 10; ++step) {
    const std::int32_t a = *rc::gen::element(kLeast, kMost, 1, -1, 100000000);
    const std::int32_t b = *rc::gen::arbitrary<std::int32_t>();
    output.clear();
    scroll.turn(Microseconds(*rc::gen::arbitrary<std::int64_t>()), a, b, output);
    scroll.roll(a, b, output);
    RC_ASSERT(output.events().size() <= 8U);
    for (const OutputEvent& event : output.events()) RC_ASSERT(std::abs(event.value) <= 32767);
  }
}

}  // namespace
}  // namespace veltrix
