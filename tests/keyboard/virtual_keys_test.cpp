#include "keyboard/virtual_keys.h"

#include <gtest/gtest.h>

#include <set>

namespace veltrix {
namespace {

TEST(VirtualKeys, EveryKeyHasOneCodeOfEachKind) {
  std::set<std::uint16_t> evdevCodes;
  std::set<std::uint8_t> codes;
  for (const auto& key : kVirtualKeyTable) {
    EXPECT_TRUE(codes.insert(key.code).second) << int{key.code};
    EXPECT_TRUE(evdevCodes.insert(key.evdevCode).second) << key.evdevCode;
    EXPECT_EQ(evdevCodeOf(key.code), key.evdevCode);
    EXPECT_EQ(virtualKeyOf(key.evdevCode), key.code);
  }
}

TEST(VirtualKeys, NothingElseHasACode) {
  std::size_t keys = 0;
  for (std::uint16_t code = 0; code < 300; ++code) {
    keys += evdevCodeOf(code) ? 1 : 0;
  }
  EXPECT_EQ(keys, kVirtualKeyTable.size());
  keys = 0;
  for (std::uint32_t code = 0; code < 0x10000; ++code) {
    keys += virtualKeyOf(code) ? 1 : 0;
  }
  EXPECT_EQ(keys, kVirtualKeyTable.size());
  EXPECT_EQ(evdevCodeOf(kNoVirtualKey), std::nullopt);
  EXPECT_EQ(evdevCodeOf(127), std::nullopt);
  EXPECT_EQ(virtualKeyOf(KEY_RESERVED), std::nullopt);
  EXPECT_EQ(virtualKeyOf(0xFFFFFFFF), std::nullopt);
}

TEST(VirtualKeys, EveryKeyOfA105KeyKeyboardHasACode) {
  std::set<std::uint16_t> keys;
  for (std::uint16_t code = KEY_ESC; code <= KEY_KPDOT; ++code) {
    keys.insert(code);
  }
  keys.insert({KEY_102ND, KEY_F11,      KEY_F12,       KEY_KPENTER,  KEY_RIGHTCTRL, KEY_KPSLASH,
               KEY_SYSRQ, KEY_RIGHTALT, KEY_HOME,      KEY_UP,       KEY_PAGEUP,    KEY_LEFT,
               KEY_RIGHT, KEY_END,      KEY_DOWN,      KEY_PAGEDOWN, KEY_INSERT,    KEY_DELETE,
               KEY_PAUSE, KEY_LEFTMETA, KEY_RIGHTMETA, KEY_COMPOSE});
  EXPECT_EQ(keys.size(), 105U);
  for (const auto code : keys) {
    EXPECT_TRUE(virtualKeyOf(code)) << code;
  }
}

TEST(VirtualKeys, TheKeysThatOtherKeyboardsHaveInAddition) {
  EXPECT_EQ(virtualKeyOf(KEY_F13), 105);
  EXPECT_EQ(virtualKeyOf(KEY_F14), 107);
  EXPECT_EQ(virtualKeyOf(KEY_F15), 113);
  EXPECT_EQ(virtualKeyOf(KEY_F16), 106);
  EXPECT_EQ(virtualKeyOf(KEY_F20), 90);
  EXPECT_EQ(virtualKeyOf(KEY_KPEQUAL), 81);
  EXPECT_EQ(virtualKeyOf(KEY_NUMLOCK), 71);
  EXPECT_EQ(virtualKeyOf(KEY_YEN), 93);
  EXPECT_EQ(virtualKeyOf(KEY_RO), 94);
  EXPECT_EQ(virtualKeyOf(KEY_KPCOMMA), 95);
  EXPECT_EQ(virtualKeyOf(KEY_HANJA), 102);
  EXPECT_EQ(virtualKeyOf(KEY_HANGEUL), 104);
  EXPECT_EQ(virtualKeyOf(KEY_FN), 63);
}

TEST(VirtualKeys, TheModifierKeysLieTogether) {
  EXPECT_EQ(evdevCodeOf(54), KEY_RIGHTMETA);
  EXPECT_EQ(evdevCodeOf(55), KEY_LEFTMETA);
  EXPECT_EQ(evdevCodeOf(56), KEY_LEFTSHIFT);
  EXPECT_EQ(evdevCodeOf(57), KEY_CAPSLOCK);
  EXPECT_EQ(evdevCodeOf(58), KEY_LEFTALT);
  EXPECT_EQ(evdevCodeOf(59), KEY_LEFTCTRL);
  EXPECT_EQ(evdevCodeOf(60), KEY_RIGHTSHIFT);
  EXPECT_EQ(evdevCodeOf(61), KEY_RIGHTALT);
  EXPECT_EQ(evdevCodeOf(62), KEY_RIGHTCTRL);
}

TEST(VirtualKeys, TheKeyLeftOfOneIsTheGraveKey) {
  EXPECT_EQ(evdevCodeOf(50), KEY_GRAVE);
  EXPECT_EQ(evdevCodeOf(10), KEY_102ND);
}

}  // namespace
}  // namespace veltrix
