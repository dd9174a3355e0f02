#include "settings/settings_rules.h"

#include <gtest/gtest.h>

#include <limits>

#include "tests/support/settings_documents.h"

namespace veltrix {
namespace {

using plist::Array;
using plist::Dictionary;
using testing::actionOf;
using testing::arrayOf;
using testing::clickOf;
using testing::dictionaryOf;
using testing::entryOf;

constexpr std::int32_t kUntouched = 77;

struct Match {
  bool found = false;
  std::int32_t best = kUntouched;
  std::int32_t global = kUntouched;
  friend bool operator==(const Match&, const Match&) = default;
};

void PrintTo(const Match& match, std::ostream* out) {
  *out << match.found << " best " << match.best << " global " << match.global;
}

Match matchFor(const Array& devices, std::uint16_t vendor, std::uint16_t product, std::uint16_t version) {
  Match match;
  match.found =
      VeltrixMatchAppPrefs(devices, nullptr, nullptr, vendor, product, version, &match.best, &match.global);
  return match;
}

TEST(ValidateSettings, NeedsEachOfTheEightKeys) {
  EXPECT_TRUE(VeltrixValidateSettings(entryOf(1, 2)));
  for (const char* key : {"driver enabled", "dict version", "device vendor id", "device product id",
                          "device version min", "device version max", "buttons", "options"}) {
    auto entry = entryOf(1, 2);
    entry.remove(key);
    EXPECT_FALSE(VeltrixValidateSettings(entry)) << key;
  }
}

TEST(ValidateSettings, LooksAtPresenceAndNotAtValues) {
  auto entry = entryOf(0, 0);
  entry.set("options", "not a dictionary");
  entry.set("buttons", 5);
  entry.set("dict version", false);
  EXPECT_TRUE(VeltrixValidateSettings(entry));
}

TEST(ValidateSettings, RefusesAnEmptyAndAMissingEntry) {
  EXPECT_FALSE(VeltrixValidateSettings(dictionaryOf()));
  EXPECT_FALSE(VeltrixValidateSettings(Dictionary()));
}

TEST(SettingsAreGlobal, IsTrueOfAnEmptyAndOfAMissingEntry) {
  EXPECT_TRUE(VeltrixSettingsAreGlobal(dictionaryOf()));
  EXPECT_TRUE(VeltrixSettingsAreGlobal(Dictionary()));
  EXPECT_TRUE(VeltrixSettingsAreGlobal(entryOf(0, 0)));
}

TEST(SettingsAreGlobal, IsFalseWhenOneIdIsNotZero) {
  EXPECT_FALSE(VeltrixSettingsAreGlobal(entryOf(1, 0)));
  EXPECT_FALSE(VeltrixSettingsAreGlobal(entryOf(0, 1)));
  EXPECT_FALSE(VeltrixSettingsAreGlobal(entryOf(0, 0, 1)));
  EXPECT_FALSE(VeltrixSettingsAreGlobal(entryOf(0, 0, 0, 1)));
}

TEST(SettingsAreGlobal, ReadsThirtyTwoBits) {
  EXPECT_FALSE(VeltrixSettingsAreGlobal(entryOf(0x10000, 0)));
  EXPECT_FALSE(VeltrixSettingsAreGlobal(entryOf(-1, 0)));
  EXPECT_TRUE(VeltrixSettingsAreGlobal(entryOf(0x100000000, 0)));
}

Dictionary entryWithButtons(const Dictionary& buttons) {
  auto entry = entryOf(1, 2);
  entry.set("buttons", buttons);
  return entry;
}

TEST(FindClickInSettings, FindsTheLowestPlainPrimaryClickOfTheRange) {
  const auto entry = entryWithButtons(
      dictionaryOf({{"03", actionOf(1)}, {"02", clickOf(1, 0)}, {"01", clickOf(1, 0x0100)}}));
  EXPECT_EQ(VeltrixFindClickInSettings(entry, 1, 3, -1), 2);
  EXPECT_EQ(VeltrixFindClickInSettings(entry, 3, 3, -1), 3);
  EXPECT_EQ(VeltrixFindClickInSettings(entry, 0, 1, -1), -1);
}

TEST(FindClickInSettings, LeavesTheExcludedButtonOut) {
  const auto entry = entryWithButtons(dictionaryOf({{"00", actionOf(1)}, {"03", actionOf(1)}}));
  EXPECT_EQ(VeltrixFindClickInSettings(entry, 0, 3, 0), 3);
  EXPECT_EQ(VeltrixFindClickInSettings(entry, 0, 2, 0), -1);
}

TEST(FindClickInSettings, FindsNothingWhenTheFirstButtonIsAboveTheLast) {
  const auto entry = entryWithButtons(dictionaryOf({{"03", actionOf(1)}, {"04", actionOf(1)}}));
  EXPECT_EQ(VeltrixFindClickInSettings(entry, 4, 3, -1), -1);
}

TEST(FindClickInSettings, FindsNothingWithoutButtons) {
  auto entry = entryOf(1, 2);
  entry.set("buttons", "text");
  EXPECT_EQ(VeltrixFindClickInSettings(entry, 0, 3, -1), -1);
  entry.remove("buttons");
  EXPECT_EQ(VeltrixFindClickInSettings(entry, 0, 3, -1), -1);
  EXPECT_EQ(VeltrixFindClickInSettings(Dictionary(), 0, 3, -1), -1);
}

TEST(FindClickInSettings, ReadsTheModifiersAsAWholeNumber) {
  const auto entry = entryWithButtons(dictionaryOf({{"01", clickOf(1, 0x10000)}}));
  EXPECT_EQ(VeltrixFindClickInSettings(entry, 1, 3, -1), -1);
}

TEST(FindClickInSettings, ReadsNumbersLeniently) {
  const auto entry =
      entryWithButtons(dictionaryOf({{"00", "1"}, {"01", dictionaryOf({{"cmd", "1"}, {"mod", "none"}})}}));
  EXPECT_EQ(VeltrixFindClickInSettings(entry, 0, 3, -1), 1);
}

TEST(FindClickInSettings, StopsAtTheLargestButtonNumber) {
  constexpr auto kMost = std::numeric_limits<std::int32_t>::max();
  EXPECT_EQ(VeltrixFindClickInSettings(entryWithButtons(dictionaryOf()), kMost - 1, kMost, -1), -1);
}

TEST(FindClickInSettings, WritesNegativeAndLongNumbersAsTheyStand) {
  const auto entry = entryWithButtons(dictionaryOf({{"-2", actionOf(1)}, {"123", actionOf(1)}}));
  EXPECT_EQ(VeltrixFindClickInSettings(entry, -3, -1, -1), -2);
  EXPECT_EQ(VeltrixFindClickInSettings(entry, 100, 200, -1), 123);
}

TEST(MatchAppPrefs, FindsNothingInAMissingOrEmptyArray) {
  EXPECT_EQ(matchFor(Array(), 1, 2, 3), (Match{false, -1, -1}));
  EXPECT_EQ(matchFor(arrayOf(), 1, 2, 3), (Match{false, -1, -1}));
}

TEST(MatchAppPrefs, SkipsElementsThatAreNoDictionaries) {
  EXPECT_EQ(matchFor(arrayOf({"text", 5, arrayOf(), entryOf(1, 2)}), 1, 2, 0), (Match{true, 3, -1}));
  EXPECT_EQ(matchFor(arrayOf({"text", 5}), 1, 2, 0), (Match{false, -1, -1}));
}

TEST(MatchAppPrefs, PrefersVendorAndProductWhereverTheyStand) {
  const auto productOnly = entryOf(0, 2);
  const auto vendorOnly = entryOf(1, 0);
  const auto both = entryOf(1, 2);
  EXPECT_EQ(matchFor(arrayOf({productOnly, vendorOnly, both}), 1, 2, 0), (Match{true, 2, -1}));
  EXPECT_EQ(matchFor(arrayOf({both, productOnly, vendorOnly}), 1, 2, 0), (Match{true, 0, -1}));
}

TEST(MatchAppPrefs, KeepsTheEarlierOfEquals) {
  EXPECT_EQ(matchFor(arrayOf({entryOf(1, 0), entryOf(0, 2)}), 1, 2, 0), (Match{true, 0, -1}));
  EXPECT_EQ(matchFor(arrayOf({entryOf(0, 2), entryOf(1, 0)}), 1, 2, 0), (Match{true, 0, -1}));
  EXPECT_EQ(matchFor(arrayOf({entryOf(1, 2, 1), entryOf(1, 2)}), 1, 2, 5), (Match{true, 0, -1}));
}

TEST(MatchAppPrefs, SkipsOtherVendorsAndProducts) {
  EXPECT_EQ(matchFor(arrayOf({entryOf(9, 2), entryOf(1, 9)}), 1, 2, 0), (Match{false, -1, -1}));
}

TEST(MatchAppPrefs, CountsBothVersionBoundsIn) {
  const auto devices = arrayOf({entryOf(1, 2, 0x0100, 0x0106)});
  EXPECT_EQ(matchFor(devices, 1, 2, 0x00FF), (Match{false, -1, -1}));
  EXPECT_EQ(matchFor(devices, 1, 2, 0x0100), (Match{true, 0, -1}));
  EXPECT_EQ(matchFor(devices, 1, 2, 0x0106), (Match{true, 0, -1}));
  EXPECT_EQ(matchFor(devices, 1, 2, 0x0107), (Match{false, -1, -1}));
}

TEST(MatchAppPrefs, ReportsTheFirstGlobalEntryBesideTheBest) {
  const auto devices = arrayOf({entryOf(0, 0), entryOf(1, 2), entryOf(0, 0)});
  EXPECT_EQ(matchFor(devices, 1, 2, 0), (Match{true, 1, 0}));
  EXPECT_EQ(matchFor(devices, 3, 4, 0), (Match{true, -1, 0}));
}

TEST(MatchAppPrefs, TakesAWildcardOfAVersionRangeForNeitherBestNorGlobal) {
  EXPECT_EQ(matchFor(arrayOf({entryOf(0, 0, 0x0100, 0x01FF)}), 1, 2, 0x0150), (Match{false, -1, -1}));
}

TEST(MatchAppPrefs, ReadsTheLowSixteenBits) {
  const auto devices = arrayOf({entryOf(0x10001, 0x50002, 0x30000, 0x70000)});
  EXPECT_EQ(matchFor(devices, 1, 2, 0xFFFF), (Match{true, 0, -1}));
  EXPECT_EQ(matchFor(arrayOf({entryOf(0x10000, 0x20000)}), 1, 2, 0), (Match{true, -1, 0}));
}

TEST(MatchAppPrefs, AcceptsMissingResults) {
  const auto devices = arrayOf({entryOf(1, 2), entryOf(0, 0)});
  EXPECT_TRUE(VeltrixMatchAppPrefs(devices, nullptr, nullptr, 1, 2, 0, nullptr, nullptr));
  EXPECT_FALSE(VeltrixMatchAppPrefs(Array(), nullptr, nullptr, 1, 2, 0, nullptr, nullptr));
}

}  // namespace
}  // namespace veltrix
