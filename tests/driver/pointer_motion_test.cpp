#include "driver/engine/pointer_motion.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <random>

namespace veltrix {
namespace {

using std::chrono::milliseconds;

constexpr DeviceModel kModel{400};
constexpr PointerModes kSlow{true, false, false};
constexpr PointerModes kSingleAxis{false, true, false};
constexpr PointerModes kScrolling{false, false, true};
constexpr std::int32_t kLeast = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();

DriverRecord recordOf(std::uint8_t speed, std::uint8_t acceleration = 0, std::uint8_t axisFlags = 0) {
  DriverRecord record{};
  record.speed = speed;
  record.acceleration = acceleration;
  record.axisFlags = axisFlags;
  return record;
}

PointerMotion motionOf(const DriverRecord& record, DeviceModel model = kModel) {
  PointerMotion motion(model);
  motion.configure(record);
  return motion;
}

Movement moveOnce(const DriverRecord& record, std::int32_t dx, std::int32_t dy) {
  return motionOf(record).move(milliseconds(1), dx, dy, {});
}

TEST(PointerMotion, MovesAStepForACountBeforeItIsConfigured) {
  PointerMotion motion(kModel);
  EXPECT_EQ(motion.move(milliseconds(1), 3, -4, {}), (Movement{3, -4}));
}

TEST(PointerMotion, ScalesByTheSpeedOverTheNativeResolution) {
  EXPECT_EQ(moveOnce(recordOf(20), 7, -9), (Movement{7, -9})) << "400 dots per inch";
  EXPECT_EQ(moveOnce(recordOf(40), 7, -9), (Movement{14, -18})) << "800 dots per inch";
  EXPECT_EQ(moveOnce(recordOf(4), 50, -50), (Movement{10, -10})) << "80 dots per inch";
  EXPECT_EQ(moveOnce(recordOf(254), 10, 0), (Movement{127, 0})) << "5080 dots per inch";
}

TEST(PointerMotion, ScalesByTheResolutionOfTheModel) {
  EXPECT_EQ(motionOf(recordOf(20), {1600}).move(milliseconds(1), 40, -80, {}), (Movement{10, -20}));
}

TEST(PointerMotion, WithoutASpeedMovesAtTheNativeResolution) {
  EXPECT_EQ(moveOnce(recordOf(kRecordNotSet), 7, -9), (Movement{7, -9}));
}

TEST(PointerMotion, IsNeverDeadAtASpeedThatMakesNoSense) {
  for (const std::uint8_t speed : std::to_array<std::uint8_t>({0, 1, 2, 3}))
    EXPECT_EQ(moveOnce(recordOf(speed), 7, -9), (Movement{7, -9})) << int{speed};
}

TEST(PointerMotion, TakesAModelWithoutResolutionAsTheCoarsest) {
  EXPECT_EQ(motionOf(recordOf(20), {0}).move(milliseconds(1), 1, 0, {}), (Movement{400, 0}));
}

TEST(PointerMotion, KeepsWhatMakesNoWholeStep) {
  PointerMotion motion = motionOf(recordOf(5));  // a quarter
  int moved = 0;
  for (int count = 0; count < 400; ++count) moved += motion.move(milliseconds(count), 1, 0, {}).dx;
  EXPECT_EQ(moved, 100);
}

TEST(PointerMotion, KeepsWhatIsLeftOfEachAxisForItself) {
  PointerMotion motion = motionOf(recordOf(10));  // half
  EXPECT_EQ(motion.move(milliseconds(1), 1, 0, {}), (Movement{0, 0}));
  EXPECT_EQ(motion.move(milliseconds(2), 0, 1, {}), (Movement{0, 0}));
  EXPECT_EQ(motion.move(milliseconds(3), 1, 1, {}), (Movement{1, 1}));
}

TEST(PointerMotion, RestForgetsWhatIsLeft) {
  PointerMotion motion = motionOf(recordOf(10));
  motion.move(milliseconds(1), 1, 1, {});
  motion.rest();
  EXPECT_EQ(motion.move(milliseconds(2), 1, 1, {}), (Movement{0, 0}));
}

TEST(PointerMotion, TremblingOfTheBallDoesNotReachThePointer) {
  PointerMotion motion = motionOf(recordOf(10));
  for (int time = 0; time < 100; ++time)
    EXPECT_EQ(motion.move(milliseconds(time), time % 2 == 0 ? 1 : -1, 0, {}), Movement{});
}

TEST(PointerMotion, AMillionStepsAddUpExactly) {
  std::mt19937 random(4711);
  for (const std::uint8_t speed : std::to_array<std::uint8_t>({4, 7, 33, 61, 250})) {
    for (const std::uint16_t resolution : std::to_array<std::uint16_t>({400, 1200, 977})) {
      PointerMotion motion = motionOf(recordOf(speed), {resolution});
      std::int64_t counts = 0;
      std::int64_t moved = 0;
      std::int64_t furthest = 0;
      for (int step = 0; step < 1000000; ++step) {
        const std::int32_t turned = std::uniform_int_distribution<std::int32_t>(-60, 70)(random);
        counts += turned;
        moved += motion.move(Microseconds(step * 1000), turned, -turned, {}).dx;
        furthest = std::max(furthest, std::abs(moved * resolution - counts * speed * 20));
      }
      EXPECT_LT(furthest, resolution) << "never a whole step from the exact place";
    }
  }
}

TEST(PointerMotion, SlowIsAQuarterAndStaysExactWhenItComesAndGoes) {
  std::mt19937 random(42);
  PointerMotion motion = motionOf(recordOf(33));
  std::int64_t quarters = 0;
  std::int64_t moved = 0;
  for (int step = 0; step < 100000; ++step) {
    const std::int32_t turned = std::uniform_int_distribution<std::int32_t>(-5, 6)(random);
    const bool slow = std::bernoulli_distribution(0.5)(random);
    quarters += std::int64_t{turned} * (slow ? 1 : 4);
    moved += motion.move(Microseconds(step * 1000), 0, turned, slow ? kSlow : PointerModes{}).dy;
    ASSERT_LT(std::abs(moved * 1600 - quarters * 660), 1600);
  }
}

TEST(PointerMotion, SlowMovesAQuarterOfTheWay) {
  PointerMotion motion = motionOf(recordOf(20));
  EXPECT_EQ(motion.move(milliseconds(1), 40, -80, kSlow), (Movement{10, -20}));
}

TEST(PointerMotion, AxisFlagsTurnAndExchange) {
  EXPECT_EQ(moveOnce(recordOf(20, 0, kInvertX), 3, 4), (Movement{-3, 4}));
  EXPECT_EQ(moveOnce(recordOf(20, 0, kInvertY), 3, 4), (Movement{3, -4}));
  EXPECT_EQ(moveOnce(recordOf(20, 0, kInvertX | kInvertY), 3, 4), (Movement{-3, -4}));
  EXPECT_EQ(moveOnce(recordOf(20, 0, kSwapXY), 3, 4), (Movement{4, 3}));
  EXPECT_EQ(moveOnce(recordOf(20, 0, kInvertZ), 3, 4), (Movement{3, 4}));
}

TEST(PointerMotion, InvertingMeansTheAxesOfThePointerWhenTheyAreExchanged) {
  EXPECT_EQ(moveOnce(recordOf(20, 0, kSwapXY | kInvertX), 3, 4), (Movement{-4, 3}));
  EXPECT_EQ(moveOnce(recordOf(20, 0, kSwapXY | kInvertY), 3, 4), (Movement{4, -3}));
}

TEST(PointerMotion, SingleAxisDropsWhatGoesAlongTheOther) {
  PointerMotion motion = motionOf(recordOf(20));
  EXPECT_EQ(motion.move(milliseconds(1), 9, 3, kSingleAxis), (Movement{9, 0}));
  EXPECT_EQ(motion.move(milliseconds(2), 9, 3, kSingleAxis), (Movement{9, 0}));
  EXPECT_EQ(motion.move(milliseconds(3), 9, 3, {}), (Movement{9, 3})) << "nothing was saved up";
}

TEST(PointerMotion, SingleAxisDecidesByTheAxesOfThePointer) {
  PointerMotion motion = motionOf(recordOf(20, 0, kSwapXY));
  EXPECT_EQ(motion.move(milliseconds(1), 9, 3, kSingleAxis), (Movement{0, 9}));
}

TEST(PointerMotion, SingleAxisDecidesAnewEachTimeItIsTurnedOn) {
  PointerMotion motion = motionOf(recordOf(20));
  motion.move(milliseconds(1), 90, 0, kSingleAxis);
  motion.move(milliseconds(2), 1, 0, {});
  EXPECT_EQ(motion.move(milliseconds(3), 1, 2, kSingleAxis), (Movement{0, 2}));
}

TEST(PointerMotion, ThePointerStaysWhileTheBallScrolls) {
  PointerMotion motion = motionOf(recordOf(20));
  EXPECT_EQ(motion.move(milliseconds(1), 9, 3, kScrolling), Movement{});
}

TEST(PointerMotion, AccelerationThatIsNotSetIsNone) {
  PointerMotion motion = motionOf(recordOf(20, kRecordNotSet));
  for (int time = 0; time < 100; ++time)
    EXPECT_EQ(motion.move(milliseconds(time), 100, -50, {}), (Movement{100, -50}));
}

TEST(PointerMotion, AccelerationMovesAFastBallFurtherAndASlowOneAsFar) {
  const DriverRecord record = recordOf(20, 100);
  PointerMotion fast = motionOf(record);
  PointerMotion slow = motionOf(record);
  int fastWay = 0;
  int slowWay = 0;
  for (int time = 0; time < 10000; time += 10) {
    fastWay += fast.move(milliseconds(time), 100, 0, {}).dx;  // 635 mm/s
    slowWay += slow.move(milliseconds(time), 1, 0, {}).dx;    // 6 mm/s
  }
  EXPECT_NEAR(fastWay, 1000 * 100 * (1.0 + 635.0 * 635.0 / (635.0 * 635.0 + 10000.0)), 1000);
  EXPECT_NEAR(slowWay, 1000, 10);
}

TEST(PointerMotion, AllCountsGiveABoundedMovement) {
  for (const std::uint8_t speed : std::to_array<std::uint8_t>({4, 254, 255})) {
    for (const std::uint16_t resolution : std::to_array<std::uint16_t>({1, 400, 65535})) {
      PointerMotion motion = motionOf(recordOf(speed, 254, kInvertX | kSwapXY), {resolution});
      EXPECT_EQ(motion.move(milliseconds(1), kLeast, kMost, {}), (Movement{-32767, -32767}));
      EXPECT_EQ(motion.move(milliseconds(1), kLeast, kMost, kSlow), (Movement{-32767, -32767}));
    }
  }
}

TEST(PointerMotion, MovementBeyondTheBoundIsDroppedNotSavedUp) {
  PointerMotion motion = motionOf(recordOf(254));
  motion.move(milliseconds(1), kMost, 0, {});
  EXPECT_LE(motion.move(milliseconds(2), 1, 0, {}).dx, 13);
}

RC_GTEST_PROP(PointerMotion, AnythingGivesABoundedMovement, ()) {
  DriverRecord record{};
  record.speed = *rc::gen::arbitrary<std::uint8_t>();
  record.acceleration = *rc::gen::arbitrary<std::uint8_t>();
  record.axisFlags = *rc::gen::arbitrary<std::uint8_t>();
  PointerMotion motion = motionOf(record, {*rc::gen::arbitrary<std::uint16_t>()});
  for (int step = 0; step < 20; ++step) {
    const Movement movement =
        motion.move(Microseconds(*rc::gen::arbitrary<std::int64_t>()),
                    *rc::gen::element(kLeast, kMost, 1, -1, 100000000), *rc::gen::arbitrary<std::int32_t>(),
                    {*rc::gen::arbitrary<bool>(), *rc::gen::arbitrary<bool>(), false});
    RC_ASSERT(std::abs(movement.dx) <= 32767);
    RC_ASSERT(std::abs(movement.dy) <= 32767);
  }
}

RC_GTEST_PROP(PointerMotion, MirroredCountsGiveAMirroredMovement, ()) {
  const DriverRecord record =
      recordOf(*rc::gen::arbitrary<std::uint8_t>(), *rc::gen::inRange<std::uint8_t>(0, 255));
  PointerMotion motion = motionOf(record);
  PointerMotion mirrored = motionOf(record);
  for (int time = 0; time < 30; ++time) {
    const int dx = *rc::gen::inRange(-50, 51);
    const int dy = *rc::gen::inRange(-50, 51);
    const Movement movement = motion.move(milliseconds(time), dx, dy, {});
    RC_ASSERT(mirrored.move(milliseconds(time), -dx, -dy, {}) == (Movement{-movement.dx, -movement.dy}));
  }
}

}  // namespace
}  // namespace veltrix
