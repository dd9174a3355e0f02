#include "settings/driver_record.h"

#include <gtest/gtest.h>

#include <limits>

#include "tests/settings/converted_records.h"

namespace veltrix {
namespace {

using plist::Value;
using testing::Bytes;
using testing::bytesOf;
using testing::dictionaryOf;
using testing::entryOf;
using testing::filledWith;
using testing::recordOf;
using testing::unsetRecord;
using testing::withOptions;

std::uint8_t speedOf(const Value& speed) {
  return recordOf(withOptions({{"speed", speed}})).speed;
}

std::uint8_t accelerationOf(bool accelerate, const Value& factor) {
  return recordOf(withOptions({{"accelerate", accelerate}, {"acceleration", factor}})).acceleration;
}

TEST(DriverRecord, IsLeftAloneWithoutAnythingToConvert) {
  DriverRecord record = filledWith(0xAA);
  EXPECT_FALSE(VeltrixAppPrefsDictToStruct({}, {}, &record));
  EXPECT_EQ(bytesOf(record), bytesOf(filledWith(0xAA)));
}

TEST(DriverRecord, NeedsARecordToFill) {
  EXPECT_FALSE(VeltrixAppPrefsDictToStruct(entryOf(1, 2), {}, nullptr));
}

TEST(DriverRecord, OfAnotherLayoutVersionSaysThatNothingIsSet) {
  for (const Value& version : {Value(2), Value(0), Value("text"), Value()}) {
    auto entry = withOptions({{"speed", 400}});
    entry.set("dict version", version);
    DriverRecord record = filledWith(0xAA);
    EXPECT_FALSE(VeltrixAppPrefsDictToStruct(entry, {}, &record));
    EXPECT_EQ(bytesOf(record), bytesOf(unsetRecord()));
  }
}

TEST(DriverRecord, OfAnEntryWithNeitherOptionsNorButtonsHasNothingSet) {
  auto entry = entryOf(1, 2);
  entry.remove("options");
  entry.remove("buttons");
  DriverRecord expected = unsetRecord();
  expected.driverEnabled = 1;
  EXPECT_EQ(bytesOf(recordOf(entry)), bytesOf(expected));
}

TEST(DriverRecord, OptionsAndButtonsOfTheWrongTypeCountAsMissing) {
  auto entry = entryOf(1, 2);
  entry.set("options", "text");
  entry.set("buttons", 7);
  DriverRecord expected = unsetRecord();
  expected.driverEnabled = 1;
  EXPECT_EQ(bytesOf(recordOf(entry)), bytesOf(expected));
}

TEST(DriverRecord, DriverEnabledIsTheLowByteOfTheNumber) {
  for (const auto& [stored, expected] :
       {std::pair<Value, int>{false, 0}, {true, 1}, {256, 0}, {0x2FF, 255}, {-1, 255}, {Value(), 0}}) {
    auto entry = entryOf(1, 2);
    entry.set("driver enabled", stored);
    EXPECT_EQ(recordOf(entry).driverEnabled, expected);
  }
}

TEST(DriverRecord, SpeedIsTwentiethsOfTheDotsPerInch) {
  EXPECT_EQ(speedOf(400), 20);
  EXPECT_EQ(speedOf(80), 4);
  EXPECT_EQ(speedOf(99), 4);
  EXPECT_EQ(speedOf(5000), 250);
}

TEST(DriverRecord, SpeedOutsideItsRangeIsNotSet) {
  for (const Value& speed : {Value(79), Value(6401), Value(0), Value(-400), Value(), Value(true)}) {
    EXPECT_EQ(speedOf(speed), 255);
  }
}

TEST(DriverRecord, SpeedKeepsTheLowByteOnly) {
  EXPECT_EQ(speedOf(6000), 44);
  EXPECT_EQ(speedOf(6400), 64);
  EXPECT_EQ(speedOf(5120), 0);
}

TEST(DriverRecord, SpeedIsReadLeniently) {
  EXPECT_EQ(speedOf("400 dpi"), 20);
  EXPECT_EQ(speedOf(419.9), 20);
}

TEST(DriverRecord, AccelerationIsHundredthsOfTheFactor) {
  EXPECT_EQ(accelerationOf(true, 1.5), 150);
  EXPECT_EQ(accelerationOf(true, 0.0), 0);
  EXPECT_EQ(accelerationOf(true, 1), 100);
  EXPECT_EQ(accelerationOf(true, 0.999), 99);
}

TEST(DriverRecord, AccelerationIsComputedInDoublePrecision) {
  EXPECT_EQ(accelerationOf(true, 0.29), 28);  // 28.999999999999996
  EXPECT_EQ(accelerationOf(true, static_cast<double>(0.74F)), 74);
}

TEST(DriverRecord, AccelerationThatIsOffIsZero) {
  EXPECT_EQ(accelerationOf(false, 1.5), 0);
  EXPECT_EQ(accelerationOf(false, 99.0), 0);
}

TEST(DriverRecord, AccelerationOutsideItsRangeIsNotSet) {
  EXPECT_EQ(accelerationOf(true, 4.5), 255);
  EXPECT_EQ(accelerationOf(true, -0.01), 255);
  EXPECT_EQ(accelerationOf(true, std::numeric_limits<double>::quiet_NaN()), 255);
  EXPECT_EQ(accelerationOf(true, std::numeric_limits<double>::infinity()), 255);
}

TEST(DriverRecord, AccelerationKeepsTheLowByteOnly) {
  EXPECT_EQ(accelerationOf(true, 4.0), 144);
  EXPECT_EQ(accelerationOf(true, 2.56), 0);
}

TEST(DriverRecord, AccelerationWithoutAFactorIsNotSetWhetherOnOrOff) {
  EXPECT_EQ(recordOf(withOptions({{"accelerate", true}})).acceleration, 255);
  EXPECT_EQ(recordOf(withOptions({{"accelerate", false}})).acceleration, 255);
}

TEST(DriverRecord, AccelerationOfAnyTypeCountsAsPresent) {
  EXPECT_EQ(accelerationOf(true, "2"), 200);
  EXPECT_EQ(accelerationOf(true, testing::arrayOf()), 0);
}

TEST(DriverRecord, EachAxisOptionHasABit) {
  EXPECT_EQ(recordOf(withOptions({{"invert x", true}})).axisFlags, 1);
  EXPECT_EQ(recordOf(withOptions({{"invert y", 1}})).axisFlags, 2);
  EXPECT_EQ(recordOf(withOptions({{"invert z", -5}})).axisFlags, 4);
  EXPECT_EQ(recordOf(withOptions({{"swap xy", 0.5}})).axisFlags, 8);
  EXPECT_EQ(recordOf(withOptions({{"invert x", 0}, {"invert z", true}, {"swap xy", true}})).axisFlags, 12);
}

TEST(DriverRecord, WheelOptionsAreZeroOrOne) {
  EXPECT_EQ(recordOf(withOptions({{"invert wheel", 256}})).invertWheel, 1);
  EXPECT_EQ(recordOf(withOptions({{"invert wheel", false}})).invertWheel, 0);
  EXPECT_EQ(recordOf(withOptions({{"inertial scroll", 256}})).inertialScroll, 1);
  EXPECT_EQ(recordOf(withOptions({{"inertial scroll", false}})).inertialScroll, 0);
}

TEST(DriverRecord, SlowModifiersCountOnlyWhileTheModeIsOn) {
  EXPECT_EQ(recordOf(withOptions({{"slow", true}, {"slow keys", 0x0900}})).slowModifiers, 0x09);
  EXPECT_EQ(recordOf(withOptions({{"slow", false}, {"slow keys", 0x0900}})).slowModifiers, 0);
  EXPECT_EQ(recordOf(withOptions({{"slow keys", 0x0900}})).slowModifiers, 0);
}

TEST(DriverRecord, SingleAxisModifiersCountOnlyWhileTheModeIsOn) {
  EXPECT_EQ(recordOf(withOptions({{"single", true}, {"single keys", 0x1A00}})).singleModifiers, 0x1A);
  EXPECT_EQ(recordOf(withOptions({{"single", false}, {"single keys", 0x1A00}})).singleModifiers, 0);
}

TEST(DriverRecord, ModifierBytesKeepEveryBitOfTheSecondByte) {
  EXPECT_EQ(recordOf(withOptions({{"slow", true}, {"slow keys", 0xFFFFFF}})).slowModifiers, 0xFF);
  EXPECT_EQ(recordOf(withOptions({{"slow", true}, {"slow keys", 0x1000FF}})).slowModifiers, 0);
}

TEST(DriverRecord, PlacesFieldsAtTheirOffsets) {
  auto entry = withOptions({{"speed", 400},
                            {"accelerate", true},
                            {"acceleration", 1.5},
                            {"invert y", true},
                            {"invert wheel", true},
                            {"slow", true},
                            {"slow keys", 0x0800},
                            {"single", true},
                            {"single keys", 0x0200},
                            {"inertial scroll", true}});
  entry.set("buttons", dictionaryOf({{"01", dictionaryOf({{"cmd", 10}, {"mod", 0x0900}, {"key", 0x7B}})},
                                     {"12", dictionaryOf({{"cmd", 20}, {"cnt", 3}})}}));
  Bytes expected{1, 20, 150, 2, 1, 8, 2, 2, 1};
  expected[26] = 10;
  expected[29] = 0x09;
  expected[30] = 0x7B;
  expected[136] = 20;
  expected[140] = 3;
  EXPECT_EQ(bytesOf(recordOf(entry)), expected);
}

}  // namespace
}  // namespace veltrix
