#include <gtest/gtest.h>

#include "settings/command_classes.h"
#include "tests/settings/converted_records.h"

namespace veltrix {
namespace {

using plist::Dictionary;
using testing::actionOf;
using testing::bytesOf;
using testing::clickOf;
using testing::dictionaryOf;
using testing::entryOf;
using testing::recordOf;
using testing::unsetRecord;
using testing::withButtons;

void expectAction(const RecordAction& action, unsigned command, unsigned modifiers, unsigned argument) {
  // The record is packed: its fields are read, not bound to a reference.
  EXPECT_EQ(unsigned{action.command}, command);
  EXPECT_EQ(unsigned{action.modifiers}, modifiers);
  EXPECT_EQ(unsigned{action.argument}, argument);
  EXPECT_EQ(unsigned{action.reserved}, 0U);
}

TEST(DriverRecordActions, UsesOnlyKeysOfTwoDigitsUpToFifteen) {
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

TEST(DriverRecordActions, CountsTheButtonsWhereverTheyAre) {
  const auto record = recordOf(withButtons({{"00", actionOf(1)}, {"15", actionOf(2)}}));
  EXPECT_EQ(record.actionCount, 2);
  EXPECT_EQ(+record.action[0].command, 1);
  EXPECT_EQ(+record.action[15].command, 2);
}

TEST(DriverRecordActions, AnActionOfTheWrongTypeIsNoAction) {
  const auto record = recordOf(withButtons({{"00", "text"}, {"01", 5}, {"02", dictionaryOf()}}));
  EXPECT_EQ(record.actionCount, 1);
  expectAction(record.action[2], 0, 0, 0);
}

Dictionary actionWithEverything(int command) {
  return dictionaryOf({{"cmd", command}, {"mod", 0x10900}, {"key", 0x10023}, {"cnt", -3}});
}

TEST(DriverRecordActions, ParametersGoByTheClassOfTheCommand) {
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

TEST(DriverRecordActions, CommandsAreTheirLowSixteenBits) {
  const auto record =
      recordOf(withButtons({{"00", actionWithEverything(0x10001)}, {"01", actionWithEverything(-1)}}));
  expectAction(record.action[0], 1, 0x0900, 0);
  expectAction(record.action[1], 0xFFFF, 0, 0);
}

TEST(DriverRecordActions, AFallbackCommandTakesTheActionOfTheFallbackEntry) {
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

TEST(DriverRecordActions, AFallbackCommandReadsNoParametersOfItsOwnEntry) {
  const auto record =
      recordOf(withButtons({{"00", actionWithEverything(200)}}), withButtons({{"00", actionOf(2)}}));
  expectAction(record.action[0], 2, 0, 0);
}

TEST(DriverRecordActions, AFallbackCommandWithoutAnActionInTheFallbackEntryIsCommandZero) {
  const auto record = recordOf(withButtons({{"00", actionWithEverything(200)}}), withButtons({}));
  expectAction(record.action[0], 0, 0, 0);
  EXPECT_EQ(record.actionCount, 1);
}

TEST(DriverRecordActions, AFallbackCommandStaysWithoutAFallbackEntry) {
  expectAction(recordOf(withButtons({{"00", actionWithEverything(200)}})).action[0], 200, 0, 0);
}

TEST(DriverRecordActions, AFallbackCommandStaysWhenTheFallbackEntryHasNoButtons) {
  auto fallback = entryOf(0, 0);
  fallback.remove("buttons");
  expectAction(recordOf(withButtons({{"00", actionOf(200)}}), fallback).action[0], 200, 0, 0);
}

TEST(DriverRecordActions, AFallbackCommandInTheFallbackEntryStays) {
  expectAction(
      recordOf(withButtons({{"00", actionOf(200)}}), withButtons({{"00", actionWithEverything(200)}}))
          .action[0],
      200, 0, 0);
}

TEST(DriverRecordActions, TheFallbackStandsInForAMissingEntryAndHasNoFallbackItself) {
  const auto fallback = withButtons({{"00", actionOf(200)}, {"01", clickOf(2, 0x0100)}});
  const auto record = recordOf({}, fallback);
  expectAction(record.action[0], 200, 0, 0);
  expectAction(record.action[1], 2, 0x0100, 0);
}

}  // namespace
}  // namespace veltrix
