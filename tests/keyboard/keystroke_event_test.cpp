#include "keyboard/keystroke_event.h"

#include <gtest/gtest.h>
#include <linux/input-event-codes.h>

#include <QKeyEvent>

#include "keyboard/keystroke_qt_keys.h"
#include "settings/modifier_mask.h"

namespace veltrix {

// For messages of failed expectations.
void PrintTo(const Keystroke& keystroke, std::ostream* out) {
  *out << "key " << int{keystroke.keyCode} << ", character " << static_cast<unsigned>(keystroke.character)
       << ", modifiers 0x" << std::hex << keystroke.modifiers;
}

namespace {

constexpr std::uint32_t kScanOffset = 8;
constexpr std::uint32_t kLock = 0x02;
constexpr std::uint32_t kThirdLevel = 0x80;

// As a display server sends it.
QKeyEvent press(std::uint32_t evdevCode, Qt::KeyboardModifiers modifiers = Qt::NoModifier,
                std::uint32_t nativeModifiers = 0, const QString& text = QString(), int key = Qt::Key_unknown,
                std::uint32_t symbol = 0) {
  return {QEvent::KeyPress, key, modifiers, evdevCode + kScanOffset, symbol, nativeModifiers, text};
}

std::uint16_t maskOf(Qt::KeyboardModifiers modifiers, std::uint32_t nativeModifiers = 0) {
  return keystrokeOf(press(KEY_A, modifiers, nativeModifiers)).value().modifiers;
}

TEST(KeystrokeEvent, TheKeyIsAPlaceAndNotAMeaning) {
  const auto keystroke = keystrokeOf(press(KEY_Q, Qt::NoModifier, 0, QStringLiteral("a"), Qt::Key_A)).value();
  EXPECT_EQ(keystroke.keyCode, 12);
  EXPECT_EQ(keystroke.character, u'a');
}

TEST(KeystrokeEvent, EachModifierHasItsBit) {
  EXPECT_EQ(maskOf(Qt::NoModifier), 0);
  EXPECT_EQ(maskOf(Qt::MetaModifier), 0x0100);
  EXPECT_EQ(maskOf(Qt::ShiftModifier), 0x0200);
  EXPECT_EQ(maskOf(Qt::AltModifier), 0x0800);
  EXPECT_EQ(maskOf(Qt::ControlModifier), 0x1000);
  EXPECT_EQ(maskOf(Qt::MetaModifier | Qt::ShiftModifier | Qt::AltModifier | Qt::ControlModifier), 0x1b00);
}

TEST(KeystrokeEvent, CapsLockAloneIs0400AndWithShift0600) {
  EXPECT_EQ(maskOf(Qt::NoModifier, kLock), 0x0400);
  EXPECT_EQ(maskOf(Qt::ShiftModifier, kLock), 0x0600);
  EXPECT_EQ(maskOf(Qt::MetaModifier, kLock), 0x0500);
}

TEST(KeystrokeEvent, TheThirdLevelIsOption) {
  EXPECT_EQ(maskOf(Qt::NoModifier, kThirdLevel), 0x0800);
  EXPECT_EQ(maskOf(Qt::GroupSwitchModifier), 0x0800);
  EXPECT_EQ(maskOf(Qt::AltModifier, kThirdLevel), 0x0800);
}

TEST(KeystrokeEvent, OtherModifiersAreNotCarriedOver) {
  EXPECT_EQ(maskOf(Qt::KeypadModifier), 0);
  EXPECT_EQ(maskOf(Qt::NoModifier, 0x10), 0);  // num lock
}

TEST(KeystrokeEvent, WithoutTextTheCharacterIs0) {
  const auto keystroke = keystrokeOf(press(KEY_EQUAL, Qt::NoModifier, 0, QString(), Qt::Key_Dead_Acute));
  EXPECT_EQ(keystroke, (Keystroke{24, 0, 0}));
}

TEST(KeystrokeEvent, OfLongerTextTheFirstUnitCounts) {
  const QString clef = QString::fromUcs4(U"\U0001d11e");
  EXPECT_EQ(keystrokeOf(press(KEY_A, Qt::NoModifier, 0, clef)).value().character, u'\xd834');
}

TEST(KeystrokeEvent, AKeyWithoutACodeIsNone) {
  EXPECT_EQ(keystrokeOf(press(KEY_PLAYPAUSE, Qt::NoModifier, 0, QString(), Qt::Key_MediaTogglePlayPause)),
            std::nullopt);
  EXPECT_EQ(keystrokeOf(press(100000)), std::nullopt);
}

TEST(KeystrokeEvent, WithoutAScanCodeTheMeaningCounts) {
  const auto codeOf = [](int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    return keystrokeOf(QKeyEvent(QEvent::KeyPress, key, modifiers)).value().keyCode;
  };
  EXPECT_EQ(codeOf(Qt::Key_Q), 12);
  EXPECT_EQ(codeOf(Qt::Key_Tab), 48);
  EXPECT_EQ(codeOf(Qt::Key_Backtab), 48);
  EXPECT_EQ(codeOf(Qt::Key_Escape), 53);
  EXPECT_EQ(codeOf(Qt::Key_Return), 36);
  EXPECT_EQ(codeOf(Qt::Key_Enter, Qt::KeypadModifier), 76);
  EXPECT_EQ(codeOf(Qt::Key_5), 23);
  EXPECT_EQ(codeOf(Qt::Key_5, Qt::KeypadModifier), 87);
  EXPECT_EQ(codeOf(Qt::Key_Left), 123);
  EXPECT_EQ(codeOf(Qt::Key_Left, Qt::KeypadModifier), 86);
  EXPECT_EQ(keystrokeOf(QKeyEvent(QEvent::KeyPress, Qt::Key_unknown, Qt::NoModifier)), std::nullopt);
}

TEST(KeystrokeEvent, ModifiersAndLevelKeysAreNoKeystrokes) {
  for (const int key : {Qt::Key_Shift, Qt::Key_Control, Qt::Key_Meta, Qt::Key_Alt, Qt::Key_AltGr,
                        Qt::Key_CapsLock, Qt::Key_Super_L, Qt::Key_Super_R}) {
    EXPECT_TRUE(isModifierKey(QKeyEvent(QEvent::KeyPress, key, Qt::NoModifier))) << key;
  }
  // The toolkit has no key for these: the left Alt of a layout that shifts to the fifth level.
  EXPECT_TRUE(isModifierKey(press(KEY_LEFTALT, Qt::NoModifier, 0, QString(), Qt::Key_unknown, 0xfe11)));
  EXPECT_TRUE(isModifierKey(press(KEY_RIGHTALT, Qt::NoModifier, 0, QString(), Qt::Key_unknown, 0xff7e)));
}

TEST(KeystrokeEvent, NumLockAndTabulatorsAreKeystrokes) {
  EXPECT_FALSE(isModifierKey(press(KEY_NUMLOCK, Qt::NoModifier, 0, QString(), Qt::Key_NumLock, 0xff7f)));
  EXPECT_FALSE(isModifierKey(press(KEY_TAB, Qt::ShiftModifier, 0, QString(), Qt::Key_Backtab, 0xfe20)));
}

TEST(KeystrokeEvent, AKeyThatTheLayoutMakesEscapeIsAKeystroke) {
  EXPECT_FALSE(isModifierKey(press(KEY_CAPSLOCK, Qt::NoModifier, 0, QString(), Qt::Key_Escape, 0xff1b)));
}

}  // namespace
}  // namespace veltrix
