#include "platform/keyboard_layout.h"

#include <gtest/gtest.h>
#include <linux/input-event-codes.h>

#include <array>

#include "tests/support/environment.h"
#include "tests/support/temporary_folder.h"

namespace veltrix {
namespace {

using testing::ScopedEnvironment;

constexpr std::uint8_t kCommand = 0x01;
constexpr std::uint8_t kShift = 0x02;
constexpr std::uint8_t kCapsLock = 0x04;
constexpr std::uint8_t kOption = 0x08;
constexpr std::uint8_t kControl = 0x10;

using Unit = std::optional<char16_t>;

KeyboardLayout named(const char* name) {
  auto layout = KeyboardLayout::named(name);
  EXPECT_TRUE(layout.ok()) << name;
  return std::move(layout.value());
}

Unit typed(const KeyboardLayout& layout, std::uint16_t key, std::uint8_t modifiers = 0) {
  std::uint32_t state = 0;
  return layout.translate(key, modifiers, state);
}

Unit typedAfter(const KeyboardLayout& layout, std::uint16_t first, std::uint16_t second,
                std::uint8_t modifiers = 0) {
  std::uint32_t state = 0;
  EXPECT_EQ(layout.translate(first, 0, state), Unit(u'\0'));
  EXPECT_NE(state, 0U);
  const auto unit = layout.translate(second, modifiers, state);
  EXPECT_EQ(state, 0U);
  return unit;
}

TEST(KeyboardLayout, TypesTheCharactersOfALayout) {
  const auto german = named("de");
  EXPECT_EQ(typed(german, KEY_Y), u'z');
  EXPECT_EQ(typed(german, KEY_Y, kShift), u'Z');
  EXPECT_EQ(typed(german, KEY_APOSTROPHE), u'ä');
  EXPECT_EQ(typed(german, KEY_APOSTROPHE, kCapsLock), u'Ä');
  EXPECT_EQ(typed(german, KEY_E, kOption), u'€');
  EXPECT_EQ(typed(german, KEY_Q, kOption), u'@');
  EXPECT_EQ(typed(german, KEY_102ND), u'<');
  EXPECT_EQ(typed(german, KEY_102ND, kOption), u'|');
}

TEST(KeyboardLayout, KnowsLayoutsAndVariantsByName) {
  EXPECT_EQ(typed(named("fr"), KEY_Q), u'a');
  EXPECT_EQ(typed(named("us:dvorak"), KEY_Q), u'\'');
  EXPECT_EQ(typed(named("us(dvorak)"), KEY_Q), u'\'');
  EXPECT_EQ(typed(named("dvorak"), KEY_Q), u'\'');
  EXPECT_EQ(typed(named("gb"), KEY_3, kShift), u'£');
  EXPECT_EQ(typed(named("ru"), KEY_Q), u'й');
}

TEST(KeyboardLayout, RefusesNamesOfNoLayout) {
  for (const char* name : {"", "nosuchlayout", "us:nosuchvariant", "../../etc/passwd", "us us"}) {
    const auto layout = KeyboardLayout::named(name);
    ASSERT_FALSE(layout.ok()) << name;
    EXPECT_NE(layout.error().message.find("no keyboard layout"), std::string::npos);
  }
}

TEST(KeyboardLayout, ALayoutByNameDoesNotMindTheEnvironment) {
  const ScopedEnvironment layout("XKB_DEFAULT_LAYOUT", "fr");
  const ScopedEnvironment variant("XKB_DEFAULT_VARIANT", "oss");
  const ScopedEnvironment options("XKB_DEFAULT_OPTIONS", "ctrl:swapcaps");
  EXPECT_EQ(typed(named("us"), KEY_Q), u'q');
}

TEST(KeyboardLayout, KeysWithNamesGiveControlCharacters) {
  const auto layout = named("us");
  const std::pair<std::uint16_t, char16_t> expected[] = {
      {KEY_LEFT, 0x1C},     {KEY_RIGHT, 0x1D},     {KEY_UP, 0x1E},  {KEY_DOWN, 0x1F},
      {KEY_HOME, 0x01},     {KEY_KPENTER, 0x03},   {KEY_END, 0x04}, {KEY_HELP, 0x05},
      {KEY_INSERT, 0x05},   {KEY_BACKSPACE, 0x08}, {KEY_TAB, 0x09}, {KEY_PAGEUP, 0x0B},
      {KEY_PAGEDOWN, 0x0C}, {KEY_ENTER, 0x0D},     {KEY_ESC, 0x1B}, {KEY_NUMLOCK, 0x1B},
      {KEY_DELETE, 0x7F},   {KEY_F1, 0x10},        {KEY_F12, 0x10}, {KEY_F15, 0x10},
      {KEY_F20, 0x10},      {KEY_SPACE, 0x20}};
  for (const auto& [key, unit] : expected) {
    for (const std::uint8_t modifiers : {std::uint8_t{0}, kCommand, kShift, kCapsLock, kOption}) {
      EXPECT_EQ(typed(layout, key, modifiers), unit) << key << ' ' << int{modifiers};
    }
  }
}

TEST(KeyboardLayout, TheKeypadGivesDigitsWhateverIsHeld) {
  for (const char* name : {"us", "de", "fr", "ru", "jp", "us:dvorak"}) {
    const auto layout = named(name);
    const std::array<std::uint16_t, 10> digits{KEY_KP0, KEY_KP1, KEY_KP2, KEY_KP3, KEY_KP4,
                                               KEY_KP5, KEY_KP6, KEY_KP7, KEY_KP8, KEY_KP9};
    for (std::size_t digit = 0; digit < digits.size(); ++digit) {
      for (std::uint8_t modifiers = 0; modifiers < 32; ++modifiers) {
        EXPECT_EQ(typed(layout, digits[digit], modifiers), Unit(u'0' + digit))
            << name << ' ' << int{modifiers};
      }
    }
    EXPECT_EQ(typed(layout, KEY_KPPLUS), u'+');
    EXPECT_EQ(typed(layout, KEY_KPMINUS, kShift), u'-');
    EXPECT_EQ(typed(layout, KEY_KPASTERISK, kControl), u'*');
    EXPECT_EQ(typed(layout, KEY_KPSLASH, kOption), u'/');
    EXPECT_EQ(typed(layout, KEY_KPEQUAL), u'=');
  }
  EXPECT_EQ(typed(named("us"), KEY_KPDOT), u'.');
  EXPECT_EQ(typed(named("de"), KEY_KPDOT), u',');
}

TEST(KeyboardLayout, ControlGivesControlCharacters) {
  const auto layout = named("us");
  EXPECT_EQ(typed(layout, KEY_A, kControl), u'\x01');
  EXPECT_EQ(typed(layout, KEY_Z, kControl), u'\x1A');
  EXPECT_EQ(typed(layout, KEY_LEFTBRACE, kControl), u'\x1B');
  EXPECT_EQ(typed(layout, KEY_SPACE, kControl), Unit(u'\0'));
  EXPECT_EQ(typed(layout, KEY_3, kControl), u'\x1B');
  EXPECT_EQ(typed(layout, KEY_SLASH, kControl), u'\x1F');
  EXPECT_EQ(typed(layout, KEY_8, kControl), u'\x7F');
  EXPECT_EQ(typed(layout, KEY_9, kControl), u'9');
  EXPECT_EQ(typed(named("ru"), KEY_A, kControl), u'\x01');
}

TEST(KeyboardLayout, KeysThatTypeNothingGiveNone) {
  const auto layout = named("us");
  EXPECT_EQ(typed(layout, KEY_LEFTSHIFT), Unit(u'\0'));
  EXPECT_EQ(typed(layout, KEY_VOLUMEUP), Unit(u'\0'));
  EXPECT_EQ(typed(layout, KEY_SYSRQ), Unit(u'\0'));
}

TEST(KeyboardLayout, ThereIsNothingForAKeyThatIsNotThere) {
  const auto layout = named("us");
  EXPECT_EQ(typed(layout, KEY_MAX), std::nullopt);
  EXPECT_EQ(typed(layout, 0xFFFF), std::nullopt);
  EXPECT_EQ(typed(layout, KEY_RESERVED), std::nullopt);
}

TEST(KeyboardLayout, DeadKeysCompose) {
  const auto french = named("fr");
  EXPECT_EQ(typedAfter(french, KEY_LEFTBRACE, KEY_I), u'î');
  EXPECT_EQ(typedAfter(french, KEY_LEFTBRACE, KEY_I, kShift), u'Î');
  EXPECT_EQ(typedAfter(french, KEY_LEFTBRACE, KEY_SPACE), u'^');
  EXPECT_EQ(typedAfter(french, KEY_LEFTBRACE, KEY_LEFTBRACE), u'^');
}

TEST(KeyboardLayout, ASequenceThatMeansNothingFailsAndIsOver) {
  const auto french = named("fr");
  EXPECT_EQ(typedAfter(french, KEY_LEFTBRACE, KEY_F), std::nullopt);
  EXPECT_EQ(typedAfter(french, KEY_LEFTBRACE, KEY_UP), std::nullopt);
}

TEST(KeyboardLayout, ModifierKeysDoNotEndASequence) {
  const auto french = named("fr");
  std::uint32_t state = 0;
  french.translate(KEY_LEFTBRACE, 0, state);
  const auto pending = state;
  EXPECT_EQ(french.translate(KEY_LEFTSHIFT, 0, state), Unit(u'\0'));
  EXPECT_EQ(state, pending);
  EXPECT_EQ(french.translate(KEY_I, kShift, state), u'Î');
}

TEST(KeyboardLayout, SequencesOfSeveralDeadKeysCompose) {
  const auto layout = named("us:intl");
  std::uint32_t state = 0;
  EXPECT_EQ(layout.translate(KEY_APOSTROPHE, 0, state), Unit(u'\0'));       // acute
  EXPECT_EQ(layout.translate(KEY_APOSTROPHE, kShift, state), Unit(u'\0'));  // diaeresis
  EXPECT_EQ(layout.translate(KEY_I, 0, state), u'ḯ');
  EXPECT_EQ(state, 0U);
}

TEST(KeyboardLayout, AStateOfNoKnownSequenceCountsAsNone) {
  const auto french = named("fr");
  std::uint32_t state = 0xDEADBEEF;
  EXPECT_EQ(french.translate(KEY_I, 0, state), u'i');
}

TEST(KeyboardLayout, ShortcutsDoNotCompose) {
  const auto french = named("fr");
  std::uint32_t state = 0;
  french.translate(KEY_LEFTBRACE, 0, state);
  const auto pending = state;
  EXPECT_EQ(french.translate(KEY_LEFTBRACE, kCommand, state), u'^');
  EXPECT_EQ(french.translate(KEY_I, kCommand, state), u'i');
  EXPECT_EQ(state, pending);
  EXPECT_EQ(french.translate(KEY_I, 0, state), u'î');
  EXPECT_EQ(typed(named("de"), KEY_EQUAL, kCommand), u'´');
}

TEST(KeyboardLayout, ShortcutsOfOtherScriptsAreThoseOfTheLatinKeys) {
  const auto russian = named("ru");
  EXPECT_EQ(typed(russian, KEY_Q), u'й');
  EXPECT_EQ(typed(russian, KEY_Q, kCommand), u'q');
  EXPECT_EQ(typed(russian, KEY_Q, kCommand | kShift), u'Q');
  EXPECT_EQ(typed(russian, KEY_1, kCommand), u'1');
  const auto greek = named("gr");
  EXPECT_EQ(typed(greek, KEY_P), u'π');  // Mac OS Roman has it, but the key is P all the same
  EXPECT_EQ(typed(greek, KEY_P, kCommand), u'p');
}

TEST(KeyboardLayout, AnotherLayoutOfTheKeymapGivesTheLatinKeysBeforeTheAmericanOne) {
  const auto layout = KeyboardLayout::current({"", "", LayoutNames{"", "ru,fr", "", ""}, ""});
  ASSERT_TRUE(layout.ok());
  EXPECT_EQ(typed(layout.value(), KEY_Q), u'й');
  EXPECT_EQ(typed(layout.value(), KEY_Q, kCommand), u'a');
}

TEST(KeyboardLayout, DeadKeysComposeInEveryLocale) {
  const ScopedEnvironment home("HOME", "/nonexistent");
  for (const char* locale : {"C", "POSIX", "", "C.UTF-8", "de_DE.UTF-8", "xx_XX.nonsense"}) {
    const ScopedEnvironment all("LC_ALL", locale);
    EXPECT_EQ(typedAfter(named("fr"), KEY_LEFTBRACE, KEY_E), u'ê') << locale;
  }
}

// Where the current layout comes from; sources that need a server are tested with one.
TEST(CurrentKeyboardLayout, TheEnvironmentComesBeforeTheSystemsFile) {
  const testing::TemporaryFolder folder;
  testing::writeFile(folder / "keyboard", "XKBLAYOUT=\"fr\"\n");
  const auto byFile = KeyboardLayout::current({"", "", std::nullopt, folder / "keyboard"});
  ASSERT_TRUE(byFile.ok());
  EXPECT_EQ(typed(byFile.value(), KEY_Q), u'a');
  const auto byEnvironment =
      KeyboardLayout::current({"", "", LayoutNames{"", "us", "dvorak", ""}, folder / "keyboard"});
  ASSERT_TRUE(byEnvironment.ok());
  EXPECT_EQ(typed(byEnvironment.value(), KEY_Q), u'\'');
}

TEST(CurrentKeyboardLayout, WithoutAnySourceItIsTheAmericanOne) {
  const auto layout = KeyboardLayout::current({"", "", std::nullopt, ""});
  ASSERT_TRUE(layout.ok());
  EXPECT_EQ(typed(layout.value(), KEY_Q), u'q');
}

TEST(CurrentKeyboardLayout, SourcesThatMakeNoSenseArePassedOver) {
  const testing::TemporaryFolder folder;
  testing::writeFile(folder / "keyboard", "XKBLAYOUT=\"nosuchlayout\"\n");
  const auto layout = KeyboardLayout::current(
      {folder / "no-display", folder / "no-socket", LayoutNames{"", "nosuch", "", ""}, folder / "keyboard"});
  ASSERT_TRUE(layout.ok());
  EXPECT_EQ(typed(layout.value(), KEY_Q), u'q');
}

}  // namespace
}  // namespace veltrix
