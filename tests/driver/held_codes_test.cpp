#include "driver/engine/held_codes.h"

#include <gmock/gmock.h>
#include <rapidcheck/gtest.h>

#include <map>
#include <vector>

namespace veltrix {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(HeldCodes, FirstHolderPressesAndLastOneReleases) {
  HeldCodes codes;
  EXPECT_TRUE(codes.press(KEY_A));
  EXPECT_FALSE(codes.press(KEY_A));
  EXPECT_FALSE(codes.release(KEY_A));
  EXPECT_TRUE(codes.isHeld(KEY_A));
  EXPECT_TRUE(codes.release(KEY_A));
  EXPECT_FALSE(codes.isHeld(KEY_A));
}

TEST(HeldCodes, ReleaseOfWhatNobodyHoldsIsNone) {
  HeldCodes codes;
  EXPECT_FALSE(codes.release(BTN_LEFT));
  EXPECT_TRUE(codes.press(BTN_LEFT));
}

TEST(HeldCodes, KeepTheOrderInWhichTheyWentDown) {
  HeldCodes codes;
  codes.press(KEY_LEFTSHIFT);
  codes.press(KEY_A);
  codes.press(BTN_LEFT);
  codes.press(KEY_LEFTSHIFT);
  codes.release(KEY_A);
  codes.press(KEY_A);
  EXPECT_THAT(codes.held(), ElementsAre(KEY_LEFTSHIFT, BTN_LEFT, KEY_A));
}

TEST(HeldCodes, ClearingEndsAllHolders) {
  HeldCodes codes;
  codes.press(KEY_A);
  codes.press(KEY_A);
  codes.clear();
  EXPECT_THAT(codes.held(), IsEmpty());
  EXPECT_FALSE(codes.release(KEY_A));
  EXPECT_TRUE(codes.press(KEY_A));
}

TEST(HeldCodes, CodesBeyondThoseOfKeysAreNeverHeld) {
  HeldCodes codes;
  EXPECT_TRUE(codes.press(KEY_MAX));
  EXPECT_FALSE(codes.press(KEY_CNT));
  EXPECT_FALSE(codes.press(0xFFFF));
  EXPECT_FALSE(codes.isHeld(0xFFFF));
  EXPECT_FALSE(codes.release(0xFFFF));
}

RC_GTEST_PROP(HeldCodes, PressesAndReleasesThatAreWrittenAlternate,
              (const std::vector<std::pair<bool, std::uint8_t>>& steps)) {
  HeldCodes codes;
  std::map<std::uint16_t, int> holders;
  for (const auto& [down, code] : steps) {
    const int before = holders[code];
    if (down) {
      RC_ASSERT(codes.press(code) == (before == 0));
      ++holders[code];
    } else {
      RC_ASSERT(codes.release(code) == (before == 1));
      holders[code] = before > 0 ? before - 1 : 0;
    }
    std::size_t held = 0;
    for (const auto& each : holders) held += each.second > 0 ? 1U : 0U;
    RC_ASSERT(codes.held().size() == held);
  }
}

}  // namespace
}  // namespace veltrix
