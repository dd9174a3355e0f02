#include "helper/typing/keyboard_model.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <linux/input-event-codes.h>

#include <algorithm>
#include <variant>

#include "driverlink/packets.h"
#include "helper/commands/command_table.h"
#include "tests/helper/typing/typed_keyboard.h"
#include "tests/support/environment.h"
#include "tests/support/temporary_folder.h"

namespace veltrix {

void PrintTo(const KeyPress& press, std::ostream* out) {
  for (const auto code : press.modifiers) {
    if (code != 0) {
      *out << code << '+';
    }
  }
  *out << press.code;
}

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::KeyReader;
using ::testing::Optional;
using testing::TypedKeyboard;

KeyPress press(std::uint16_t code, std::initializer_list<std::uint16_t> modifiers = {}) {
  KeyPress made;
  std::copy(modifiers.begin(), modifiers.end(), made.modifiers.begin());
  made.code = code;
  return made;
}

std::optional<KeyPress> keysFor(const TypedKeyboard& keyboard, std::uint8_t modifiers, xkb_keysym_t keysym) {
  return keyboard.model().keysFor({modifiers, keysym});
}

LayoutNames withOption(const char* layout, const char* option) {
  return {.model = "", .layout = layout, .variant = "", .options = option};
}

LayoutNames withVariant(const char* layout, const char* variant) {
  return {.model = "", .layout = layout, .variant = variant, .options = ""};
}

// Letters on two keys, with the modifiers that it takes to read them and no other key at all.
constexpr const char* kSmallKeymap = R"(xkb_keymap {
  xkb_keycodes { minimum = 8; maximum = 255; <A> = 38; <B> = 39; <SH> = 50; <CT> = 37; <PLUS> = 86; <MS> = 108; };
  xkb_types { include "complete" };
  xkb_compat { include "complete" };
  xkb_symbols {
    key <A> { [ a, A ], [ Greek_alpha, Greek_ALPHA ] };
    key <B> { [ b, B ] };
    key <SH> { [ Shift_L ] };
    key <CT> { [ Control_L ] };
    key <MS> { [ Mode_switch ] };
    key <PLUS> { [ KP_Add ] };
    modifier_map Shift { <SH> };
    modifier_map Control { <CT> };
  };
};)";

TEST(KeyboardModel, NeedsAKeymap) {
  EXPECT_FALSE(KeyboardModel::of(xkb::makeContext(), {}, testing::kEnglish).ok());
}

TEST(KeyboardModelKeys, LetterIsTheKeyThatProducesItNow) {
  EXPECT_THAT(keysFor(TypedKeyboard("us"), kHoldControl, XKB_KEY_c), Optional(press(KEY_C, {KEY_LEFTCTRL})));
  EXPECT_THAT(keysFor(TypedKeyboard("us:dvorak"), kHoldControl, XKB_KEY_c),
              Optional(press(KEY_I, {KEY_LEFTCTRL})));
  EXPECT_THAT(keysFor(TypedKeyboard("fr"), kHoldControl, XKB_KEY_a), Optional(press(KEY_Q, {KEY_LEFTCTRL})));
  EXPECT_THAT(keysFor(TypedKeyboard("de"), kHoldControl | kHoldShift, XKB_KEY_z),
              Optional(press(KEY_Y, {KEY_LEFTCTRL, KEY_LEFTSHIFT})));
}

TEST(KeyboardModelKeys, AllModifiersAreHeldInOneOrder) {
  EXPECT_THAT(keysFor(TypedKeyboard("us"), kHoldShift | kHoldControl | kHoldAlt | kHoldSuper, XKB_KEY_x),
              Optional(press(KEY_X, {KEY_LEFTCTRL, KEY_LEFTALT, KEY_LEFTMETA, KEY_LEFTSHIFT})));
}

TEST(KeyboardModelKeys, LatinLetterOnAnotherScriptIsTheKeyOfAnotherGroup) {
  const TypedKeyboard keyboard({.model = "", .layout = "ru,us", .variant = ",dvorak", .options = ""}, 0);
  EXPECT_THAT(keysFor(keyboard, kHoldControl, XKB_KEY_c), Optional(press(KEY_I, {KEY_LEFTCTRL})));
}

TEST(KeyboardModelKeys, LatinLetterOnAnotherScriptAloneIsItsAmericanPlace) {
  for (const char* name : {"ru", "gr"}) {
    EXPECT_THAT(keysFor(TypedKeyboard(name), kHoldControl, XKB_KEY_c),
                Optional(press(KEY_C, {KEY_LEFTCTRL})));
    EXPECT_THAT(keysFor(TypedKeyboard(name), kHoldControl | kHoldShift, XKB_KEY_z),
                Optional(press(KEY_Z, {KEY_LEFTCTRL, KEY_LEFTSHIFT})));
  }
  EXPECT_THAT(keysFor(TypedKeyboard("ru"), kHoldControl, XKB_KEY_bracketleft),
              Optional(press(KEY_LEFTBRACE, {KEY_LEFTCTRL})));
}

TEST(KeyboardModelKeys, GroupInEffectCounts) {
  const LayoutNames names{.model = "", .layout = "us,us", .variant = ",dvorak", .options = ""};
  EXPECT_THAT(keysFor(TypedKeyboard(names, 0), kHoldControl, XKB_KEY_c),
              Optional(press(KEY_C, {KEY_LEFTCTRL})));
  EXPECT_THAT(keysFor(TypedKeyboard(names, 1), kHoldControl, XKB_KEY_c),
              Optional(press(KEY_I, {KEY_LEFTCTRL})));
}

TEST(KeyboardModelKeys, SignsAndDigitsGetTheShiftThatTheLayoutWants) {
  EXPECT_THAT(keysFor(TypedKeyboard("us"), kHoldControl, XKB_KEY_plus),
              Optional(press(KEY_EQUAL, {KEY_LEFTCTRL, KEY_LEFTSHIFT})));
  EXPECT_THAT(keysFor(TypedKeyboard("de"), kHoldControl, XKB_KEY_plus),
              Optional(press(KEY_RIGHTBRACE, {KEY_LEFTCTRL})));
  EXPECT_THAT(keysFor(TypedKeyboard("us"), kHoldControl, XKB_KEY_minus),
              Optional(press(KEY_MINUS, {KEY_LEFTCTRL})));
  EXPECT_THAT(keysFor(TypedKeyboard("fr"), kHoldControl, XKB_KEY_0),
              Optional(press(KEY_0, {KEY_LEFTCTRL, KEY_LEFTSHIFT})));
  EXPECT_THAT(keysFor(TypedKeyboard("us"), kHoldControl | kHoldShift, XKB_KEY_plus),
              Optional(press(KEY_EQUAL, {KEY_LEFTCTRL, KEY_LEFTSHIFT})));
}

TEST(KeyboardModelKeys, SignOfTheThirdLevelGetsItsKey) {
  EXPECT_THAT(keysFor(TypedKeyboard("de"), kHoldControl, XKB_KEY_bracketleft),
              Optional(press(KEY_8, {KEY_LEFTCTRL, KEY_RIGHTALT})));
}

TEST(KeyboardModelKeys, KeysWithNamesAreFoundByThem) {
  const TypedKeyboard us("us");
  const std::pair<xkb_keysym_t, std::uint16_t> named[] = {{XKB_KEY_Return, KEY_ENTER},
                                                          {XKB_KEY_F3, KEY_F3},
                                                          {XKB_KEY_F12, KEY_F12},
                                                          {XKB_KEY_Print, KEY_SYSRQ},
                                                          {XKB_KEY_Menu, KEY_COMPOSE},
                                                          {XKB_KEY_Page_Up, KEY_PAGEUP},
                                                          {XKB_KEY_space, KEY_SPACE},
                                                          {XKB_KEY_XF86AudioMute, KEY_MUTE},
                                                          {XKB_KEY_XF86AudioPlay, KEY_PLAYPAUSE},
                                                          {XKB_KEY_XF86MonBrightnessUp, KEY_BRIGHTNESSUP},
                                                          {XKB_KEY_XF86Calculator, KEY_CALC},
                                                          {XKB_KEY_XF86Eject, KEY_EJECTCD},
                                                          {XKB_KEY_KP_Left, KEY_KP4}};
  for (const auto& [keysym, code] : named) {
    EXPECT_THAT(keysFor(us, 0, keysym), Optional(press(code))) << keysym;
  }
  EXPECT_THAT(keysFor(TypedKeyboard(withOption("us", "caps:swapescape")), 0, XKB_KEY_Escape),
              Optional(press(KEY_CAPSLOCK)));
}

TEST(KeyboardModelKeys, KeysThatTheKeymapLacksAreAtTheirWellKnownPlace) {
  const auto small = TypedKeyboard::ofText(kSmallKeymap);
  EXPECT_THAT(keysFor(small, 0, XKB_KEY_XF86AudioMute), Optional(press(KEY_MUTE)));
  EXPECT_THAT(keysFor(small, kHoldControl, XKB_KEY_Return), Optional(press(KEY_ENTER, {KEY_LEFTCTRL})));
  EXPECT_THAT(keysFor(small, 0, XKB_KEY_F3), Optional(press(KEY_F3)));
  EXPECT_THAT(keysFor(small, 0, XKB_KEY_F11), Optional(press(KEY_F11)));
  EXPECT_THAT(keysFor(small, 0, XKB_KEY_F13), Optional(press(KEY_F13)));
  EXPECT_THAT(keysFor(small, 0, XKB_KEY_plus), Optional(press(KEY_EQUAL, {KEY_LEFTSHIFT})));
}

class KeysOfCommands : public ::testing::TestWithParam<const char*> {};

TEST_P(KeysOfCommands, ArePressedOnEveryLayout) {
  const TypedKeyboard keyboard(GetParam());
  const auto model = keyboard.model();
  for (const auto& row : commandTable()) {
    if (const auto* stroke = std::get_if<KeyStroke>(&row.attempt)) {
      const auto keys = model.keysFor(*stroke);
      EXPECT_TRUE(keys.has_value()) << row.command << ' ' << std::hex << stroke->keysym;
      if (!keys) {
        continue;
      }
      KeyReader reader(keyboard);
      reader.read(*keys);
      EXPECT_TRUE(reader.isAtRest()) << row.command;
      EXPECT_EQ(reader.hadHeld(XKB_MOD_NAME_CTRL), (stroke->modifiers & kHoldControl) != 0) << row.command;
      EXPECT_EQ(reader.hadHeld(XKB_MOD_NAME_ALT), (stroke->modifiers & kHoldAlt) != 0) << row.command;
      EXPECT_EQ(reader.hadHeld(XKB_MOD_NAME_LOGO), (stroke->modifiers & kHoldSuper) != 0) << row.command;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Layouts, KeysOfCommands,
                         ::testing::Values("us", "gb", "de", "fr", "us:dvorak", "es", "jp", "ru", "gr", "il",
                                           "ara"),
                         testing::nameOfLayout);

TEST(KeyboardModelKeys, ThereAreNoneForAKeyThatIsNowhere) {
  EXPECT_EQ(keysFor(TypedKeyboard("us"), 0, XKB_KEY_Thai_kokai), std::nullopt);
  EXPECT_EQ(keysFor(TypedKeyboard("us"), 0, XKB_KEY_NoSymbol), std::nullopt);
  EXPECT_EQ(keysFor(TypedKeyboard("us"), 0, 0xFFFFFFFF), std::nullopt);
}

TEST(KeyboardModelKeys, ThereAreNoneWithoutTheModifier) {
  EXPECT_EQ(keysFor(TypedKeyboard::ofText(kSmallKeymap), kHoldSuper, XKB_KEY_a), std::nullopt);
}

TEST(KeyboardModelKeys, ModifiersAreTheKeysThatTheKeymapMakesThem) {
  EXPECT_THAT(keysFor(TypedKeyboard(withOption("us", "ctrl:swapcaps")), kHoldControl, XKB_KEY_c),
              Optional(press(KEY_C, {KEY_CAPSLOCK})));
  EXPECT_THAT(
      keysFor(TypedKeyboard(withOption("us", "altwin:swap_alt_win")), kHoldAlt | kHoldSuper, XKB_KEY_Tab),
      Optional(press(KEY_TAB, {KEY_LEFTMETA, KEY_LEFTALT})));
}

// The keys that switch the group together would leave the person with another layout.
TEST(KeyboardModelKeys, ModifiersThatSwitchTheGroupTogetherAreHeldAnotherWay) {
  const TypedKeyboard keyboard(
      {.model = "", .layout = "us,ru", .variant = "", .options = "grp:lctrl_lshift_toggle"});
  const auto keys = keysFor(keyboard, kHoldControl | kHoldShift, XKB_KEY_t);
  ASSERT_TRUE(keys.has_value());
  KeyReader reader(keyboard);
  reader.read(*keys);
  EXPECT_TRUE(reader.isAtRest());
  EXPECT_TRUE(reader.hadHeld(XKB_MOD_NAME_CTRL) && reader.hadHeld(XKB_MOD_NAME_SHIFT));
  EXPECT_EQ(reader.keysym(), xkb_keysym_t{XKB_KEY_T});
}

TEST(KeyboardModelKeys, ModifiersThatSwitchTheGroupEveryWayAreHeldAsAPersonDoes) {
  const TypedKeyboard keyboard(
      {.model = "", .layout = "us,ru", .variant = "", .options = "grp:ctrl_shift_toggle"});
  EXPECT_THAT(keysFor(keyboard, kHoldControl | kHoldShift, XKB_KEY_t),
              Optional(press(KEY_T, {KEY_LEFTCTRL, KEY_LEFTSHIFT})));
}

TEST(KeyboardModelText, FewestModifiersAndKeysAmongTheLettersComeFirst) {
  const auto us = TypedKeyboard("us").model();
  EXPECT_THAT(us.keysForCharacter(U'a'), ElementsAre(press(KEY_A)));
  EXPECT_THAT(us.keysForCharacter(U'A'), ElementsAre(press(KEY_A, {KEY_LEFTSHIFT})));
  EXPECT_THAT(us.keysForCharacter(U'+'), ElementsAre(press(KEY_EQUAL, {KEY_LEFTSHIFT})));
  EXPECT_THAT(us.keysForCharacter(U'('), ElementsAre(press(KEY_9, {KEY_LEFTSHIFT})));
  EXPECT_THAT(us.keysForCharacter(U'7'), ElementsAre(press(KEY_7)));
  EXPECT_THAT(us.keysForCharacter(U' '), ElementsAre(press(KEY_SPACE)));
}

TEST(KeyboardModelText, KeypadIsUsedWhenNothingElseTypesIt) {
  EXPECT_THAT(TypedKeyboard::ofText(kSmallKeymap).model().keysForCharacter(U'+'),
              ElementsAre(press(KEY_KPPLUS)));
  EXPECT_EQ(keysFor(TypedKeyboard("us"), 0, XKB_KEY_KP_7), std::nullopt);  // Num Lock may be on or off
}

TEST(KeyboardModelText, ThirdLevelIsReachedByTheKeyThatTheKeymapHasForIt) {
  EXPECT_THAT(TypedKeyboard("de").model().keysForCharacter(U'€'), ElementsAre(press(KEY_E, {KEY_RIGHTALT})));
  const TypedKeyboard moved(withOption("de", "lv3:lwin_switch"));
  KeyReader reader(moved);
  EXPECT_EQ(reader.read(moved.model().keysForCharacter(U'€')), "€");
}

TEST(KeyboardModelText, FifthLevelIsReachedToo) {
  const TypedKeyboard neo(withVariant("de", "neo"));
  const auto model = neo.model();
  for (const char32_t character : {U'{', U'α', U'Σ', U'∀', U'§'}) {
    KeyReader reader(neo);
    EXPECT_EQ(reader.read(model.keysForCharacter(character)), testing::utf8({character}));
    EXPECT_TRUE(reader.isAtRest());
  }
}

TEST(KeyboardModelText, GroupThatAKeySwitchesToWhileHeldIsReached) {
  const auto small = TypedKeyboard::ofText(kSmallKeymap);
  const auto keys = small.model().keysForCharacter(U'α');
  EXPECT_THAT(keys, ElementsAre(press(KEY_A, {KEY_RIGHTALT})));
  KeyReader reader(small);
  EXPECT_EQ(reader.read(keys), "α");
  EXPECT_TRUE(reader.isAtRest());
}

TEST(KeyboardModelText, DeadKeysCompose) {
  const auto german = TypedKeyboard("de").model();
  EXPECT_THAT(german.keysForCharacter(U'ê'), ElementsAre(press(KEY_GRAVE), press(KEY_E)));
  EXPECT_THAT(TypedKeyboard("fr").model().keysForCharacter(U'ï'),
              ElementsAre(press(KEY_LEFTBRACE, {KEY_LEFTSHIFT}), press(KEY_I)));
}

TEST(KeyboardModelText, AccentAloneIsItsDeadKeyAndSpace) {
  EXPECT_THAT(TypedKeyboard("de").model().keysForCharacter(U'^'),
              ElementsAre(press(KEY_GRAVE), press(KEY_SPACE)));
  EXPECT_THAT(TypedKeyboard("de").model().keysForCharacter(U'`'),
              ElementsAre(press(KEY_EQUAL, {KEY_LEFTSHIFT}), press(KEY_SPACE)));
  EXPECT_THAT(TypedKeyboard("us:intl").model().keysForCharacter(U'\''),
              ElementsAre(press(KEY_APOSTROPHE, {KEY_RIGHTALT})));  // which has a key of its own there
}

TEST(KeyboardModelText, TwoDeadKeysComposeWhereOneIsNotEnough) {
  const TypedKeyboard german("de");
  KeyReader reader(german);
  const auto keys = german.model().keysForCharacter(U'ấ');
  EXPECT_EQ(keys.size(), 3U);
  EXPECT_EQ(reader.read(keys), "ấ");
}

TEST(KeyboardModelText, KeyThatBeginsASequenceIsNotTypedAlone) {
  const testing::TemporaryFolder folder;
  testing::writeFile(folder / "Compose", "<a> <b> : \"x\"\n");
  const testing::ScopedEnvironment own("XCOMPOSEFILE", folder / "Compose");
  const auto model = TypedKeyboard("ru").model();
  EXPECT_THAT(model.keysForCharacter(U'x'), IsEmpty());
  const auto us = TypedKeyboard("us").model();
  EXPECT_THAT(us.keysForCharacter(U'a'), IsEmpty());
  EXPECT_THAT(us.keysForCharacter(U'x'), ElementsAre(press(KEY_X)));
}

TEST(KeyboardModelText, OtherScriptsAreTyped) {
  EXPECT_THAT(TypedKeyboard("ru").model().keysForCharacter(U'й'), ElementsAre(press(KEY_Q)));
  EXPECT_THAT(TypedKeyboard("gr").model().keysForCharacter(U'π'), ElementsAre(press(KEY_P)));
  EXPECT_THAT(TypedKeyboard("ru").model().keysForCharacter(U'q'), IsEmpty());
}

TEST(KeyboardModelText, NewLinesAndTabsAreTheirKeysAndOtherControlsNone) {
  const auto us = TypedKeyboard("us").model();
  EXPECT_THAT(us.keysForCharacter(U'\n'), ElementsAre(press(KEY_ENTER)));
  EXPECT_THAT(us.keysForCharacter(U'\t'), ElementsAre(press(KEY_TAB)));
  for (const char32_t control : {U'\0', U'\3', U'\b', U'\x1B', U'\x7F', U'\x80', U'\x9F'}) {
    EXPECT_THAT(us.keysForCharacter(control), IsEmpty()) << std::uint32_t{control};
  }
}

KeyboardModel lockedModel(const TypedKeyboard& keyboard) {
  auto model = keyboard.model();
  model.setLamps(kCapsLockLamp);
  return model;
}

TEST(KeyboardModelLocks, CapsLockTurnsShiftRoundForLettersOnly) {
  const auto us = lockedModel(TypedKeyboard("us"));
  EXPECT_THAT(us.keysForCharacter(U'a'), ElementsAre(press(KEY_A, {KEY_LEFTSHIFT})));
  EXPECT_THAT(us.keysForCharacter(U'A'), ElementsAre(press(KEY_A)));
  EXPECT_THAT(us.keysForCharacter(U'1'), ElementsAre(press(KEY_1)));
  EXPECT_THAT(us.keysForCharacter(U'!'), ElementsAre(press(KEY_1, {KEY_LEFTSHIFT})));
  const auto dvorak = lockedModel(TypedKeyboard("us:dvorak"));
  EXPECT_THAT(dvorak.keysForCharacter(U'C'), ElementsAre(press(KEY_I)));
  const auto greek = lockedModel(TypedKeyboard("gr"));
  EXPECT_THAT(greek.keysForCharacter(U'Π'), ElementsAre(press(KEY_P)));
  EXPECT_THAT(greek.keysForCharacter(U'π'), ElementsAre(press(KEY_P, {KEY_LEFTSHIFT})));
  const auto russian = lockedModel(TypedKeyboard("ru"));
  EXPECT_THAT(russian.keysForCharacter(U'й'), ElementsAre(press(KEY_Q, {KEY_LEFTSHIFT})));
}

TEST(KeyboardModelLocks, DeadKeysComposeUnderCapsLock) {
  const auto german = lockedModel(TypedKeyboard("de"));
  EXPECT_THAT(german.keysForCharacter(U'ê'), ElementsAre(press(KEY_GRAVE), press(KEY_E, {KEY_LEFTSHIFT})));
  EXPECT_THAT(german.keysForCharacter(U'Ê'), ElementsAre(press(KEY_GRAVE), press(KEY_E)));
}

TEST(KeyboardModelLocks, CharacterThatCapsLockKeepsAwayIsThereOnceItIsLifted) {
  const TypedKeyboard keyboard("de");
  const auto german = lockedModel(keyboard);
  EXPECT_THAT(german.keysForCharacter(U'ẞ'), ElementsAre(press(KEY_MINUS)));
  EXPECT_THAT(german.keysForCharacter(U'ß'), IsEmpty());
  EXPECT_THAT(german.keysWithLockLifted(U'ß'), ElementsAre(press(KEY_MINUS)));
  EXPECT_THAT(german.keyThatLiftsLock(), Optional(press(KEY_CAPSLOCK)));
  EXPECT_EQ(keyboard.model().keyThatLiftsLock(), std::nullopt);
  EXPECT_THAT(keyboard.model().keysWithLockLifted(U'ß'), ElementsAre(press(KEY_MINUS)));
}

TEST(KeyboardModelLocks, LampsThatGoOutAreForgotten) {
  auto us = lockedModel(TypedKeyboard("us"));
  us.setLamps(0);
  EXPECT_THAT(us.keysForCharacter(U'a'), ElementsAre(press(KEY_A)));
  EXPECT_EQ(us.keyThatLiftsLock(), std::nullopt);
}

TEST(KeyboardModelLocks, KeyThatDoesNothingElseLiftsALockOfShift) {
  const auto us = lockedModel(TypedKeyboard(withOption("us", "caps:shiftlock")));
  EXPECT_THAT(us.keysForCharacter(U'!'), ElementsAre(press(KEY_1)));
  EXPECT_THAT(us.keysForCharacter(U'1'), IsEmpty());
  EXPECT_THAT(us.keysWithLockLifted(U'1'), ElementsAre(press(KEY_1)));
  EXPECT_THAT(us.keyThatLiftsLock(), Optional(press(KEY_CAPSLOCK)));
}

TEST(KeyboardModelLocks, ShiftThatEndsCapsLockIsNotPressedUnderIt) {
  const TypedKeyboard keyboard(withOption("us", "shift:breaks_caps"));
  const auto plan = planTyping(lockedModel(keyboard), "Abc!A", UnicodeInput::kNone);
  EXPECT_THAT(plan.missing, IsEmpty());
  KeyReader reader(keyboard);
  reader.lock(KEY_CAPSLOCK);
  EXPECT_EQ(reader.read(plan.presses), "Abc!A");
  EXPECT_TRUE(reader.isAtRest());
}

TEST(KeyboardModelLocks, LampThatShowsTheGroupTellsOfNoLock) {
  const LayoutNames names{.model = "", .layout = "us,de", .variant = "", .options = "grp_led:caps"};
  for (const xkb_layout_index_t group : {0U, 1U}) {
    const auto model = lockedModel(TypedKeyboard(names, group));
    EXPECT_THAT(model.keysForCharacter(U'a'), ElementsAre(press(KEY_A))) << group;
  }
}

TEST(KeyboardModelLocks, KeymapWithoutLampsHasNoLocks) {
  std::string text = kSmallKeymap;
  constexpr std::string_view kWithLamps = R"(include "complete")";
  text.replace(text.rfind(kWithLamps), kWithLamps.size(),
               "interpret Shift_L { action = SetMods(modifiers = Shift); };");
  const auto small = lockedModel(TypedKeyboard::ofText(text.c_str()));
  EXPECT_THAT(small.keysForCharacter(U'A'), ElementsAre(press(KEY_A, {KEY_LEFTSHIFT})));
}

TEST(KeyboardModelLocks, ShortcutsAreTheSameUnderCapsLock) {
  for (const char* layout : {"us", "us:dvorak", "de", "fr", "ru", "gr"}) {
    const TypedKeyboard keyboard(layout);
    const auto plain = keyboard.model();
    auto locked = lockedModel(keyboard);
    for (const auto lamps : {int{kCapsLockLamp}, int{kNumLockLamp}, kCapsLockLamp | kNumLockLamp}) {
      locked.setLamps(static_cast<std::uint16_t>(lamps));
      for (const auto& row : commandTable()) {
        if (const auto* stroke = std::get_if<KeyStroke>(&row.attempt)) {
          EXPECT_EQ(locked.keysFor(*stroke), plain.keysFor(*stroke)) << layout << ' ' << row.command;
        }
      }
    }
  }
}

TEST(KeyboardModelLocks, SignOfAShortcutIsTheOneThatALockOfShiftGives) {
  const auto us = lockedModel(TypedKeyboard(withOption("us", "caps:shiftlock")));
  EXPECT_THAT(us.keysFor({kHoldControl, XKB_KEY_plus}), Optional(press(KEY_EQUAL, {KEY_LEFTCTRL})));
  EXPECT_THAT(us.keysFor({kHoldControl, XKB_KEY_c}), Optional(press(KEY_C, {KEY_LEFTCTRL})));
}

TEST(KeyboardModelText, LocaleWithoutATableComposesAsEnglish) {
  for (const char* locale : {"C", "", "xx_YY.UTF-8"}) {
    auto context = xkb::makeContext();
    auto found = xkb::keymapOfNames(context.get(), withVariant("de", ""));
    const auto model = KeyboardModel::of(std::move(context), std::move(found), locale);
    ASSERT_TRUE(model.ok());
    EXPECT_EQ(model.value().keysForCharacter(U'ê').size(), 2U) << locale;
  }
}

}  // namespace
}  // namespace veltrix
