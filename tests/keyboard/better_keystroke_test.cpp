#include <gtest/gtest.h>

#include "keyboard/key_tables.h"
#include "tests/keyboard/key_tables_made.h"

namespace veltrix {
namespace {

TEST(BetterKeystroke, EscapeReplacesTheKeypadsClearWhateverIsHeld) {
  EXPECT_TRUE(IsBetterKeystroke(53, kCommand, 71, 0, 0));
  EXPECT_TRUE(IsBetterKeystroke(53, 0, 71, 0, 1));
  EXPECT_FALSE(IsBetterKeystroke(71, 0, 53, kCommand, 0));
  EXPECT_FALSE(IsBetterKeystroke(71, 0, 53, 0, 1));  // it is none of the keys that are preferred
}

TEST(BetterKeystroke, APreferredKeypadWinsOverModifiers) {
  constexpr std::uint8_t kKeypad[] = {81, 75, 67, 89, 91, 92, 78, 86, 87, 88, 69, 83, 84, 85, 82, 65, 76};
  for (const auto key : kKeypad) {
    EXPECT_TRUE(IsBetterKeystroke(key, kCommand, 0, 0, 1)) << int{key};
    EXPECT_FALSE(IsBetterKeystroke(0, 0, key, kCommand, 1)) << int{key};
    EXPECT_FALSE(IsBetterKeystroke(key, 0, 0, kCommand, 0)) << int{key};
  }
  EXPECT_FALSE(IsBetterKeystroke(90, 0, 0, 0, 1));
}

TEST(BetterKeystroke, KeysOutsideOfTheKeypadsCodesWin) {
  EXPECT_TRUE(IsBetterKeystroke(63, kCommand, 64, 0, 0));
  EXPECT_TRUE(IsBetterKeystroke(96, kCommand, 95, 0, 0));
  EXPECT_FALSE(IsBetterKeystroke(64, 0, 63, kCommand, 0));
  EXPECT_FALSE(IsBetterKeystroke(95, 0, 96, kCommand, 0));
}

TEST(BetterKeystroke, FewerOrEasierModifiersWinAndEqualsStay) {
  EXPECT_TRUE(IsBetterKeystroke(1, kShift, 0, kOption, 0));
  EXPECT_TRUE(IsBetterKeystroke(1, kOption, 0, kOption | kShift, 0));
  EXPECT_TRUE(IsBetterKeystroke(1, kOption | kShift, 0, kControl, 0));
  EXPECT_TRUE(IsBetterKeystroke(1, kControl, 0, kCapsLock, 0));
  EXPECT_TRUE(IsBetterKeystroke(1, kShift | kOption | kControl | kCapsLock, 0, kCommand, 0));
  EXPECT_FALSE(IsBetterKeystroke(0, kShift, 1, kShift, 0));
  EXPECT_FALSE(IsBetterKeystroke(0, kOption, 1, kShift, 0));
}

}  // namespace
}  // namespace veltrix
