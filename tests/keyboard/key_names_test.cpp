#include "keyboard/key_names.h"

#include <gtest/gtest.h>

#include "keyboard/layout_access.h"
#include "settings/modifier_mask.h"
#include "tests/support/catalog_bytes.h"
#include "tests/support/scoped_layout.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/thread_locale.h"

namespace veltrix {
namespace {

using testing::ScopedLayout;
using testing::ThreadLanguage;

constexpr std::uint16_t kControlCommand = kControlModifier | kCommandModifier;
constexpr std::uint16_t kOtherBits = static_cast<std::uint16_t>(~kAllModifiers);

// Names on the American layout, in plain English words.
class KeyNames : public ::testing::Test {
 protected:
  KeyNames() { GetKeyboardInformation(nullptr, nullptr); }

  ScopedLayout fLayout{"us"};
};

TEST_F(KeyNames, NamesTheKeysThatTypeNothing) {
  const std::pair<std::uint16_t, const char*> expected[] = {
      {123, "left"},  {124, "right"},   {126, "up"},         {125, "down"},  {115, "home"},
      {76, "enter"},  {119, "end"},     {114, "help"},       {51, "delete"}, {48, "tab"},
      {36, "return"}, {116, "page up"}, {121, "page down"},  {49, "space"},  {117, "forward delete"},
      {53, "esc"},    {71, "clear"},    {110, "application"}};
  for (const auto& [keyCode, name] : expected) {
    EXPECT_EQ(GetKeyName(keyCode), name) << keyCode;
  }
}

TEST_F(KeyNames, NumbersTheFunctionKeys) {
  const std::uint16_t keys[] = {122, 120, 99, 118, 96, 97, 98, 100, 101, 109, 103, 111, 105, 107, 113};
  int number = 0;
  for (const auto keyCode : keys) {
    EXPECT_EQ(GetKeyName(keyCode), "F" + std::to_string(++number));
  }
}

TEST_F(KeyNames, AnUnknownFunctionKeyHasNoNumber) {
  EXPECT_EQ(GetKeyChar(106), 0x10);
  EXPECT_EQ(GetKeyName(106), "F");
}

TEST_F(KeyNames, NamesTheModifierKeysOnTheLeft) {
  EXPECT_EQ(GetKeyName(55), "Command");
  EXPECT_EQ(GetKeyName(56), "Shift");
  EXPECT_EQ(GetKeyName(57), "Caps Lock");
  EXPECT_EQ(GetKeyName(58), "Option");
  EXPECT_EQ(GetKeyName(59), "Control");
  EXPECT_EQ(GetKeyName(54), "???");
  EXPECT_EQ(GetKeyName(60), "???");
}

TEST_F(KeyNames, CodesWithoutAKeyHaveNoCharacter) {
  EXPECT_EQ(GetKeyChar(127), 0);
  EXPECT_EQ(GetKeyChar(255), 0);
  EXPECT_EQ(GetKeyName(127), "???");
  EXPECT_EQ(GetKeyName(255), "");
  EXPECT_EQ(GetKeyName(254), "up");  // the code's low seven bits
  EXPECT_EQ(GetKeyName(66), "???");
}

TEST_F(KeyNames, OnlyEscapeItselfIsCalledEsc) {
  EXPECT_EQ(GetKeyChar(53), 0x1B);
  EXPECT_EQ(GetKeyChar(71), 0x1B);
  EXPECT_EQ(GetKeyCombinationName(53, 0), "esc");
  EXPECT_EQ(GetKeyCombinationName(71, 0), "Num+clear");
  EXPECT_EQ(GetKeyCombinationNameWithSep(71, 0, "-", " "), "Num clear");
}

TEST_F(KeyNames, UpperCaseIsForAsciiLettersOnly) {
  EXPECT_EQ(GetKeyNameWithCase(0, true), "A");
  EXPECT_EQ(GetKeyNameWithCase(0, false), "a");
  EXPECT_EQ(GetKeyName(0), "a");
  EXPECT_EQ(GetKeyNameWithCase(18, true), "1");
  EXPECT_EQ(GetKeyNameWithCase(33, true), "[");
  EXPECT_EQ(GetKeyNameWithCase(50, true), "`");
  const ScopedLayout german("de");
  GetKeyboardInformation(nullptr, nullptr);
  EXPECT_EQ(GetKeyNameWithCase(39, true), "ä");
  EXPECT_EQ(GetKeyNameWithCase(27, true), "ß");
  EXPECT_EQ(GetKeyNameWithCase(16, true), "Z");
}

TEST_F(KeyNames, ModifiersStandInOneOrder) {
  EXPECT_EQ(GetModifiersName(255, kAllModifiers), "Control+Command+Option+Shift+Caps Lock");
  EXPECT_EQ(GetModifiersName(255, kControlCommand), "Control+Command");
  EXPECT_EQ(GetModifiersName(255, 0), "");
  EXPECT_EQ(GetModifiersNameWithSep(0, kShiftModifier | kOptionModifier, " - "), "Option - Shift");
}

TEST_F(KeyNames, KeysOfTheKeypadBlockAreNumbered) {
  EXPECT_EQ(GetModifiersName(64, 0), "");
  EXPECT_EQ(GetModifiersName(65, 0), "Num");
  EXPECT_EQ(GetModifiersName(92, kShiftModifier), "Shift+Num");
  EXPECT_EQ(GetModifiersName(93, 0), "");
  EXPECT_EQ(GetModifiersName(72, 0), "Num");  // also what is no digit there
}

TEST_F(KeyNames, WithoutASeparatorNothingStandsBetween) {
  EXPECT_EQ(GetModifiersNameWithSep(255, kControlModifier | kShiftModifier, std::nullopt), "ControlShift");
  EXPECT_EQ(GetKeyCombinationNameWithSepAndCase(0, kControlCommand, std::nullopt, std::nullopt, true),
            "ControlCommandA");
  EXPECT_EQ(GetKeyCombinationNameWithSepAndCase(0, kControlCommand, std::nullopt, "+", true),
            "ControlCommand+A");
}

TEST_F(KeyNames, OtherModifierBitsHaveNoName) {
  EXPECT_EQ(GetModifiersName(255, kOtherBits), "");
  EXPECT_EQ(GetKeyCombinationName(0, kOtherBits), "a");
  EXPECT_EQ(GetKeyCombinationName(0, kOtherBits | kShiftModifier), "Shift+a");
  EXPECT_EQ(GetKeyCombinationName(255, kOtherBits), "");
}

TEST_F(KeyNames, NamesWholeCombinations) {
  EXPECT_EQ(GetKeyCombinationNameWithSepAndCase(0, 0x1100, "+", "+", true), "Control+Command+A");
  EXPECT_EQ(GetKeyCombinationName(87, 0), "Num+5");
  EXPECT_EQ(GetKeyCombinationName(87, kShiftModifier), "Shift+Num+5");
  EXPECT_EQ(GetKeyCombinationName(255, 0x0200), "Shift");
  EXPECT_EQ(GetKeyCombinationName(255, 0), "(none)");
  EXPECT_EQ(GetKeyCombinationName(0, 0), "a");
  EXPECT_EQ(GetKeyCombinationName(76, 0), "Num+enter");
  EXPECT_EQ(GetKeyCombinationName(300, kShiftModifier), "Shift");  // there is no such key
}

TEST_F(KeyNames, WithoutALayoutTheCharactersStay) {
  const ScopedLayout none;
  EXPECT_EQ(GetKeyboardInformation(nullptr, nullptr), -192);
  EXPECT_EQ(GetKeyChar(0), 'a');
}

TEST_F(KeyNames, ReadingTheLayoutGivesTheCharacterOfTheLastKey) {
  EXPECT_EQ(GetKeyboardInformation(nullptr, nullptr), 0x1E);
}

TEST_F(KeyNames, DeadKeysAreNamedByTheirAccents) {
  const ScopedLayout french("fr");
  GetKeyboardInformation(nullptr, nullptr);
  EXPECT_EQ(GetKeyName(33), "^");
  EXPECT_EQ(GetKeyNameWithCase(34, true), "I");  // the key after it in the order of codes
  EXPECT_EQ(GetKeyNameWithCase(12, true), "A");
}

TEST_F(KeyNames, LettersOfOtherScriptsGiveTheLatinKey) {
  const ScopedLayout russian("ru");
  GetKeyboardInformation(nullptr, nullptr);
  EXPECT_EQ(GetKeyNameWithCase(12, true), "Q");
  EXPECT_EQ(GetKeyNameWithCase(33, true), "[");
}

// A bundle with a table of key names in a made-up language.
class LocalisedKeyNames : public KeyNames {
 protected:
  LocalisedKeyNames() {
    testing::writeFile(
        fFolder / "locale/xx/LC_MESSAGES/Localizable.mo",
        testing::catalogBytes(
            {{"Control", "C-"}, {"up", "oben"}, {"F", "Fn"}, {"(none)", "nix"}, {"Num", "Z"}}));
  }

  testing::TemporaryFolder fFolder;
  Bundle fBundle{fFolder.path()};
  ThreadLanguage fLanguage{"xx"};
};

TEST_F(LocalisedKeyNames, WordsComeFromTheTable) {
  GetKeyboardInformation(&fBundle, "Localizable");
  EXPECT_EQ(KeyNamesLocStr("Control"), "C-");
  EXPECT_EQ(GetKeyCombinationName(126, kControlModifier | kShiftModifier), "C-+Shift+oben");
  EXPECT_EQ(GetKeyCombinationNameWithSep(87, 0, std::nullopt, std::nullopt), "Z5");
  EXPECT_EQ(GetKeyName(122), "Fn1");
  EXPECT_EQ(GetKeyName(106), "Fn");
  EXPECT_EQ(GetKeyCombinationName(255, 0), "nix");
}

TEST_F(LocalisedKeyNames, TheTableIsUsedOnlyWhenBothPartsAreThere) {
  GetKeyboardInformation(&fBundle, nullptr);
  EXPECT_EQ(GetKeyName(126), "up");
  GetKeyboardInformation(nullptr, "Localizable");
  EXPECT_EQ(GetKeyName(126), "up");
}

TEST_F(LocalisedKeyNames, TheTableIsTakenEvenWithoutALayout) {
  const ScopedLayout none;
  EXPECT_EQ(GetKeyboardInformation(&fBundle, "Localizable"), -192);
  EXPECT_EQ(GetKeyName(126), "oben");
}

// The words of the window's own table, as menus put them together.
class WordsOfTheWindow : public KeyNames {
 protected:
  WordsOfTheWindow() { GetKeyboardInformation(&fBundle, kStringTable); }

  static std::string keystroke(std::uint16_t keyCode, std::uint16_t modifiers) {
    return GetKeyCombinationNameWithSepAndCase(keyCode, modifiers, std::nullopt, std::nullopt, true);
  }

  ThreadLanguage fLanguage{"en"};
  Bundle fBundle = Bundle::standard();
};

TEST_F(WordsOfTheWindow, ReadWellWithoutSeparatorsAndWithPlus) {
  EXPECT_EQ(keystroke(0, kControlCommand), "Ctrl\u00a0Super\u00a0A");
  EXPECT_EQ(keystroke(48, kOptionModifier | kShiftModifier), "Alt\u00a0Shift\u00a0Tab");
  EXPECT_EQ(keystroke(87, 0), "Num\u00a05");
  EXPECT_EQ(keystroke(71, 0), "Num\u00a0Lock");
  EXPECT_EQ(keystroke(51, 0), "Backspace");
  EXPECT_EQ(keystroke(117, 0), "Delete");
  EXPECT_EQ(keystroke(110, 0), "Menu");
  EXPECT_EQ(keystroke(122, 0), "F1");
  EXPECT_EQ(keystroke(255, 0), "(none)");
  EXPECT_EQ(GetModifiersName(255, kControlCommand), "Ctrl+Super\u00a0");
  EXPECT_EQ(joinKeyNames(GetModifiersName(255, kControlCommand), "+", "Click"), "Ctrl+Super+Click");
  EXPECT_EQ(GetKeyCombinationName(48, kControlCommand), "Ctrl+Super+Tab");
  EXPECT_EQ(GetKeyCombinationNameWithSep(48, kControlCommand, "", ""), "Ctrl\u00a0Super\u00a0Tab");
}

}  // namespace
}  // namespace veltrix
