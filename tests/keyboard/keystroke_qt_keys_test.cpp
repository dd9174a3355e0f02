#include "keyboard/keystroke_qt_keys.h"

#include <gtest/gtest.h>
#include <linux/input-event-codes.h>

#include <Qt>
#include <set>

#include "keyboard/virtual_keys.h"

namespace veltrix {
namespace {

TEST(KeystrokeQtKeys, KeysOfOneMeaningAreToldApartByTheKeypad) {
  EXPECT_EQ(evdevCodeOfQtKey(Qt::Key_Minus, false), KEY_MINUS);
  EXPECT_EQ(evdevCodeOfQtKey(Qt::Key_Minus, true), KEY_KPMINUS);
  EXPECT_EQ(evdevCodeOfQtKey(Qt::Key_Home, false), KEY_HOME);
  EXPECT_EQ(evdevCodeOfQtKey(Qt::Key_Home, true), KEY_KP7);
}

TEST(KeystrokeQtKeys, AKeyThatTheKeypadLacksIsTheOther) {
  EXPECT_EQ(evdevCodeOfQtKey(Qt::Key_A, true), KEY_A);
}

TEST(KeystrokeQtKeys, ShiftedCharactersBelongToTheirKeys) {
  EXPECT_EQ(evdevCodeOfQtKey(Qt::Key_Exclam, false), KEY_1);
  EXPECT_EQ(evdevCodeOfQtKey(Qt::Key_AsciiTilde, false), KEY_GRAVE);
}

TEST(KeystrokeQtKeys, LettersAndDigitsAreAllThereAndDifferent) {
  std::set<std::uint16_t> codes;
  for (int key = Qt::Key_A; key <= Qt::Key_Z; ++key) {
    codes.insert(evdevCodeOfQtKey(key, false).value());
  }
  for (int key = Qt::Key_0; key <= Qt::Key_9; ++key) {
    codes.insert(evdevCodeOfQtKey(key, false).value());
    codes.insert(evdevCodeOfQtKey(key, true).value());
  }
  EXPECT_EQ(codes.size(), 26U + 2 * 10U);
}

// A key that is found but has no virtual key code could never be recorded.
TEST(KeystrokeQtKeys, EveryKeyThatIsFoundHasAVirtualKeyCode) {
  int found = 0;
  const auto check = [&found](int key, bool keypad) {
    if (const auto code = evdevCodeOfQtKey(key, keypad)) {
      EXPECT_TRUE(virtualKeyOf(*code).has_value()) << std::hex << key;
      ++found;
    }
  };
  for (int key = 0x20; key <= 0xff; ++key) {
    check(key, false);
    check(key, true);
  }
  for (int key = 0x01000000; key <= 0x01002000; ++key) {
    check(key, false);
    check(key, true);
  }
  EXPECT_GT(found, 200);
}

TEST(KeystrokeQtKeys, AMeaningWithoutAKeyIsNone) {
  EXPECT_EQ(evdevCodeOfQtKey(Qt::Key_unknown, false), std::nullopt);
  EXPECT_EQ(evdevCodeOfQtKey(0, false), std::nullopt);
  EXPECT_EQ(evdevCodeOfQtKey(Qt::Key_Shift, false), std::nullopt);
}

}  // namespace
}  // namespace veltrix
