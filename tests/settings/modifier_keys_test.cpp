#include "settings/modifier_keys.h"

#include <gtest/gtest.h>

namespace veltrix {
namespace {

TEST(ModifierKeys, ControlOptionAndShiftComeBackUnchanged) {
  const ModifierKeys keys = modifierKeysFromMask(0x1A00);
  EXPECT_EQ(keys, (ModifierKeys{.command = false, .shift = true, .option = true, .control = true}));
  EXPECT_EQ(maskFromModifierKeys(keys), 0x1A00U);
}

TEST(ModifierKeys, CapsLockIsNoChoiceAndIsDropped) {
  EXPECT_EQ(modifierKeysFromMask(0x0400), ModifierKeys{});
  EXPECT_EQ(maskFromModifierKeys(modifierKeysFromMask(0x0400)), 0U);
}

TEST(ModifierKeys, EveryKeyHasItsBit) {
  EXPECT_EQ(maskFromModifierKeys({.command = true}), 0x0100U);
  EXPECT_EQ(maskFromModifierKeys({.shift = true}), 0x0200U);
  EXPECT_EQ(maskFromModifierKeys({.option = true}), 0x0800U);
  EXPECT_EQ(maskFromModifierKeys({.control = true}), 0x1000U);
}

TEST(ModifierKeys, OnlyTheFourBitsSurvive) {
  EXPECT_EQ(maskFromModifierKeys(modifierKeysFromMask(0xFFFFFFFF)), 0x1B00U);
}

}  // namespace
}  // namespace veltrix
