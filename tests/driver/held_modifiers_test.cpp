#include "driver/held_modifiers.h"

#include <gtest/gtest.h>

namespace veltrix {
namespace {

void press(HeldModifiers& keys, std::uint16_t code, std::int32_t value) {
  input_event event{};
  event.type = EV_KEY;
  event.code = code;
  event.value = value;
  keys.add(event);
}

TEST(HeldModifiers, EachKeyIsItsModifierWhileItIsDown) {
  for (const ModifierKey& key : kModifierKeys) {
    HeldModifiers keys;
    press(keys, key.code, 1);
    EXPECT_EQ(keys.held(), key.held);
    press(keys, key.code, 2);  // repeats
    EXPECT_EQ(keys.held(), key.held);
    press(keys, key.code, 0);
    EXPECT_EQ(keys.held(), 0);
  }
}

TEST(HeldModifiers, AModifierIsHeldUntilItsLastKeyIsUp) {
  HeldModifiers keys;
  press(keys, KEY_LEFTSHIFT, 1);
  press(keys, KEY_RIGHTSHIFT, 1);
  press(keys, KEY_LEFTCTRL, 1);
  press(keys, KEY_LEFTSHIFT, 0);
  EXPECT_EQ(keys.held(), kHeldShift | kHeldControl);
  press(keys, KEY_RIGHTSHIFT, 0);
  EXPECT_EQ(keys.held(), kHeldControl);
}

TEST(HeldModifiers, AfterALossAllCountAsUp) {
  HeldModifiers keys;
  press(keys, KEY_LEFTSHIFT, 1);
  input_event lost{};
  lost.type = EV_SYN;
  lost.code = SYN_DROPPED;
  keys.add(lost);
  EXPECT_EQ(keys.held(), 0);
}

}  // namespace
}  // namespace veltrix
