#include "settings/driver_record.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <limits>

#include "settings/command_classes.h"
#include "tests/support/settings_documents.h"

namespace veltrix {
namespace {

using plist::Dictionary;
using plist::Value;
using testing::actionOf;
using testing::clickOf;
using testing::dictionaryOf;
using testing::entryOf;

using Bytes = std::array<std::uint8_t, sizeof(DriverRecord)>;

Bytes bytesOf(const DriverRecord& record) {
  Bytes bytes{};
  std::memcpy(bytes.data(), &record, bytes.size());
  return bytes;
}

DriverRecord filledWith(unsigned char byte) {
  DriverRecord record;
  std::memset(&record, byte, sizeof record);
  return record;
}

DriverRecord unsetRecord() {
  DriverRecord record{};
  record.speed = 255;
  record.acceleration = 255;
  return record;
}

DriverRecord recordOf(const Dictionary& entry, const Dictionary& fallback = {}) {
  DriverRecord record = filledWith(0xAA);
  EXPECT_TRUE(VeltrixAppPrefsDictToStruct(entry, fallback, &record));
  return record;
}

Dictionary withOptions(std::initializer_list<std::pair<const char*, Value>> options) {
  auto entry = entryOf(1, 2);
  entry.set("options", dictionaryOf(options));
  return entry;
}

Dictionary withButtons(std::initializer_list<std::pair<const char*, Value>> buttons) {
  auto entry = entryOf(1, 2);
  entry.set("buttons", dictionaryOf(buttons));
  return entry;
}

std::uint8_t speedOf(const Value& speed) {
  return recordOf(withOptions({{"speed", speed}})).speed;
}

std::uint8_t accelerationOf(bool accelerate, const Value& factor) {
  return recordOf(withOptions({{"accelerate", accelerate}, {"acceleration", factor}})).acceleration;
}

void expectAction(const RecordAction& action, unsigned command, unsigned modifiers, unsigned argument) {
  // The record is packed: its fields are read, not bound to a reference.
  EXPECT_EQ(unsigned{action.command}, command);
  EXPECT_EQ(unsigned{action.modifiers}, modifiers);
  EXPECT_EQ(unsigned{action.argument}, argument);
  EXPECT_EQ(unsigned{action.reserved}, 0U);
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

TEST(DriverRecord, UsesOnlyKeysOfTwoDigitsUpToFifteen) {
  const auto record = recordOf(withButtons({{"03", actionOf(24)},
                                            {"16", actionOf(24)},
                                            {"7", actionOf(24)},
                                            {"-1", actionOf(24)},
                                            {"007", actionOf(24)},
                                            {"016", actionOf(24)},
                                            {"5", actionOf(24)},
                                            {" 5", actionOf(24)},
                                            {"+5", actionOf(24)},
                                            {"5x", actionOf(24)},
                                            {"", actionOf(24)}}));
  DriverRecord expected = unsetRecord();
  expected.driverEnabled = 1;
  expected.actionCount = 1;
  expected.action[3].command = 24;
  expected.speed = expected.acceleration = 255;
  EXPECT_EQ(bytesOf(record), bytesOf(expected));
}

TEST(DriverRecord, CountsTheButtonsWhereverTheyAre) {
  const auto record = recordOf(withButtons({{"00", actionOf(1)}, {"15", actionOf(2)}}));
  EXPECT_EQ(record.actionCount, 2);
  EXPECT_EQ(+record.action[0].command, 1);
  EXPECT_EQ(+record.action[15].command, 2);
}

TEST(DriverRecord, AnActionOfTheWrongTypeIsNoAction) {
  const auto record = recordOf(withButtons({{"00", "text"}, {"01", 5}, {"02", dictionaryOf()}}));
  EXPECT_EQ(record.actionCount, 1);
  expectAction(record.action[2], 0, 0, 0);
}

Dictionary actionWithEverything(int command) {
  return dictionaryOf({{"cmd", command}, {"mod", 0x10900}, {"key", 0x10023}, {"cnt", -3}});
}

TEST(DriverRecord, ParametersGoByTheClassOfTheCommand) {
  for (int command = 0; command < 300; ++command) {
    if (command == kFallbackCommand) {
      continue;
    }
    SCOPED_TRACE(command);
    const bool isClick = (command >= 1 && command <= 8) || (command >= 12 && command <= 18);
    const bool isScroll = command >= 20 && command <= 23;
    const bool isKeystroke = command == 10;
    const unsigned modifiers = isClick || isKeystroke ? 0x0900 : 0;
    const unsigned argument = isScroll ? 0xFFFD : isKeystroke ? 0x0023 : 0;
    expectAction(recordOf(withButtons({{"04", actionWithEverything(command)}})).action[4],
                 static_cast<unsigned>(command), modifiers, argument);
  }
}

TEST(DriverRecord, CommandsAreTheirLowSixteenBits) {
  const auto record =
      recordOf(withButtons({{"00", actionWithEverything(0x10001)}, {"01", actionWithEverything(-1)}}));
  expectAction(record.action[0], 1, 0x0900, 0);
  expectAction(record.action[1], 0xFFFF, 0, 0);
}

TEST(DriverRecord, AFallbackCommandTakesTheActionOfTheFallbackEntry) {
  const auto entry = withButtons({{"00", actionOf(200)}, {"01", actionOf(0x100C8)}, {"02", actionOf(5)}});
  const auto fallback = withButtons({{"00", clickOf(2, 0x0200)},
                                     {"01", dictionaryOf({{"cmd", 10}, {"key", 8}, {"mod", 0x0100}})},
                                     {"02", actionOf(6)},
                                     {"03", actionOf(7)}});
  const auto record = recordOf(entry, fallback);
  expectAction(record.action[0], 2, 0x0200, 0);
  expectAction(record.action[1], 10, 0x0100, 8);
  expectAction(record.action[2], 5, 0, 0);
  expectAction(record.action[3], 0, 0, 0);
  EXPECT_EQ(record.actionCount, 3);
}

TEST(DriverRecord, AFallbackCommandReadsNoParametersOfItsOwnEntry) {
  const auto record =
      recordOf(withButtons({{"00", actionWithEverything(200)}}), withButtons({{"00", actionOf(2)}}));
  expectAction(record.action[0], 2, 0, 0);
}

TEST(DriverRecord, AFallbackCommandWithoutAnActionInTheFallbackEntryIsCommandZero) {
  const auto record = recordOf(withButtons({{"00", actionWithEverything(200)}}), withButtons({}));
  expectAction(record.action[0], 0, 0, 0);
  EXPECT_EQ(record.actionCount, 1);
}

TEST(DriverRecord, AFallbackCommandStaysWithoutAFallbackEntry) {
  expectAction(recordOf(withButtons({{"00", actionWithEverything(200)}})).action[0], 200, 0, 0);
}

TEST(DriverRecord, AFallbackCommandStaysWhenTheFallbackEntryHasNoButtons) {
  auto fallback = entryOf(0, 0);
  fallback.remove("buttons");
  expectAction(recordOf(withButtons({{"00", actionOf(200)}}), fallback).action[0], 200, 0, 0);
}

TEST(DriverRecord, AFallbackCommandInTheFallbackEntryStays) {
  expectAction(
      recordOf(withButtons({{"00", actionOf(200)}}), withButtons({{"00", actionWithEverything(200)}}))
          .action[0],
      200, 0, 0);
}

TEST(DriverRecord, TheFallbackStandsInForAMissingEntryAndHasNoFallbackItself) {
  const auto fallback = withButtons({{"00", actionOf(200)}, {"01", clickOf(2, 0x0100)}});
  const auto record = recordOf({}, fallback);
  expectAction(record.action[0], 200, 0, 0);
  expectAction(record.action[1], 2, 0x0100, 0);
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
