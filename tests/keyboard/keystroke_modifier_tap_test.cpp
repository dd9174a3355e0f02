#include "keyboard/keystroke_modifier_tap.h"

#include <gtest/gtest.h>

namespace veltrix {
namespace {

constexpr int kShift = 1;
constexpr int kControl = 2;

bool tap(ModifierTap* taps, int key) {
  taps->press(key);
  return taps->release(key);
}

TEST(ModifierTap, NoticesTheSecondTapOfTheSameKey) {
  ModifierTap taps;
  EXPECT_FALSE(tap(&taps, kShift));
  EXPECT_TRUE(tap(&taps, kShift));
}

TEST(ModifierTap, CountsAnewAfterTheSecondTap) {
  ModifierTap taps;
  tap(&taps, kShift);
  tap(&taps, kShift);
  EXPECT_FALSE(tap(&taps, kShift));
  EXPECT_TRUE(tap(&taps, kShift));
}

TEST(ModifierTap, TapsOfDifferentKeysDoNotCount) {
  ModifierTap taps;
  EXPECT_FALSE(tap(&taps, kShift));
  EXPECT_FALSE(tap(&taps, kControl));
  EXPECT_FALSE(tap(&taps, kShift));
}

TEST(ModifierTap, AnythingInBetweenStartsAgain) {
  ModifierTap taps;
  tap(&taps, kShift);
  taps.interrupt();
  EXPECT_FALSE(tap(&taps, kShift));
}

TEST(ModifierTap, AnInterruptionWhileTheKeyIsDownMakesItNoTap) {
  ModifierTap taps;
  tap(&taps, kShift);
  taps.press(kShift);
  taps.interrupt();
  EXPECT_FALSE(taps.release(kShift));
  EXPECT_FALSE(tap(&taps, kShift));
}

TEST(ModifierTap, TwoKeysHeldTogetherAreNoTap) {
  ModifierTap taps;
  tap(&taps, kShift);
  taps.press(kShift);
  taps.press(kControl);
  EXPECT_FALSE(taps.release(kControl));
  EXPECT_FALSE(taps.release(kShift));
  EXPECT_FALSE(tap(&taps, kShift));
}

TEST(ModifierTap, AReleaseWithoutAPressIsNoTap) {
  ModifierTap taps;
  EXPECT_FALSE(taps.release(kShift));
  EXPECT_FALSE(tap(&taps, kShift));
}

}  // namespace
}  // namespace veltrix
