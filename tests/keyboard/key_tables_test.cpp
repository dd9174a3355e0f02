#include "keyboard/key_tables.h"

#include <gmock/gmock.h>

#include <memory>

#include "platform/mac_roman.h"
#include "settings/modifier_mask.h"
#include "tests/keyboard/key_tables_made.h"
#include "tests/support/scoped_layout.h"

namespace veltrix {
namespace {

using ::testing::Each;
using testing::ScopedLayout;

TEST(KeyTables, ADeadKeyComposesTheKeyAfterItInTheOrderOfCodes) {
  const ScopedLayout french("fr");
  const auto tables = namedTables();
  const auto circumflexedI = *macRomanFromUnicode(u'î');
  EXPECT_EQ(tables.keys[circumflexedI], 34);
  EXPECT_EQ(tables.modifiers[circumflexedI], 0);
  EXPECT_NE(tables.keys['i'], 34);
  const auto typing = typingTables(french.layout());
  EXPECT_EQ(typing.keys[circumflexedI], kNone);
  EXPECT_EQ(typing.keys['i'], 34);
}

TEST(KeyTables, ADigitIsOnTheMainKeysUnlessTheKeypadIsPreferred) {
  const ScopedLayout american("us");
  EXPECT_EQ(namedTables().keys['5'], 23);
  EXPECT_EQ(namedTables(1).keys['5'], 87);
  EXPECT_EQ(namedTables(-1).keys['5'], 87);
}

TEST(KeyTables, AKeyOutsideOfTheKeypadWinsEvenWithModifiers) {
  const ScopedLayout american("us");
  const auto tables = namedTables();
  EXPECT_EQ(tables.keys['+'], 24);
  EXPECT_EQ(tables.modifiers['+'], kShift);
  EXPECT_EQ(namedTables(1).keys['+'], 69);
}

TEST(KeyTables, EscapeIsTheEscapeKey) {
  const ScopedLayout american("us");
  EXPECT_EQ(namedTables().keys[0x1B], 53);
  EXPECT_EQ(namedTables(1).keys[0x1B], 53);
}

TEST(KeyTables, OptionIsPreferredToCapsLockAlthoughItIsTriedLater) {
  EXPECT_TRUE(IsBetterKeystroke(5, kOption, 5, kCapsLock, 0));
  const ScopedLayout american("us");
  const auto tables = namedTables();
  EXPECT_EQ(tables.keys['A'], 0);
  EXPECT_EQ(tables.modifiers['A'], kShift);
}

TEST(KeyTables, OfEqualWaysTheLowerKeyStays) {
  const ScopedLayout american("us");
  const auto tables = namedTables();
  EXPECT_EQ(tables.keys[0x10], 96);  // all function keys outside of the keypad's codes give this character
  EXPECT_EQ(tables.keys[0], 52);
  EXPECT_EQ(namedTables(1).keys['.'], 65);
}

TEST(KeyTables, CharactersOfNoKeyHaveNone) {
  const ScopedLayout american("us");
  const auto tables = namedTables();
  EXPECT_EQ(tables.keys[0xFF], kNone);
  EXPECT_EQ(tables.modifiers[0xFF], 0);
}

TEST(KeyTables, ControlCharactersAreTypedWithControl) {
  const ScopedLayout american("us");
  const auto tables = namedTables();
  EXPECT_EQ(tables.keys[0x02], 11);
  EXPECT_EQ(tables.modifiers[0x02], kControl);
  EXPECT_EQ(tables.keys[0x01], 115);  // the home key needs none
}

TEST(KeyTables, SetupMakesBothTables) {
  const ScopedLayout german("de");
  std::unique_ptr<std::uint8_t[]> keys;
  std::unique_ptr<std::uint8_t[]> modifiers;
  ASSERT_EQ(SetupKeyTables(&keys, &modifiers), 1);
  EXPECT_EQ(keys['z'], 16);
  EXPECT_EQ(keys['5'], 23);
  ASSERT_EQ(SetupKeyTablesNumPad(&keys, &modifiers, 1), 1);
  EXPECT_EQ(keys['5'], 87);
}

TEST(KeyTables, MissingArgumentsFail) {
  const ScopedLayout german("de");
  std::unique_ptr<std::uint8_t[]> table;
  EXPECT_EQ(SetupKeyTables(nullptr, &table), 0);
  EXPECT_EQ(SetupKeyTables(&table, nullptr), 0);
  EXPECT_EQ(table, nullptr);
  std::uint8_t bytes[kCharacters] = {};
  EXPECT_EQ(UpdateKeyTables(bytes, nullptr), 0);
  EXPECT_EQ(UpdateKeyTables(nullptr, bytes), 0);
  EXPECT_THAT(bytes, Each(0));
}

TEST(KeyTables, WithoutALayoutTheyStayAsTheyWere) {
  const ScopedLayout none;
  std::uint8_t keys[kCharacters] = {};
  std::uint8_t modifiers[kCharacters] = {};
  EXPECT_EQ(UpdateKeyTables(keys, modifiers), 0);
  EXPECT_THAT(keys, Each(0));
  std::unique_ptr<std::uint8_t[]> one;
  std::unique_ptr<std::uint8_t[]> other;
  EXPECT_EQ(SetupKeyTables(&one, &other), 0);
}

TEST(KeyTables, MessagesAndModifiersOfACharacter) {
  const ScopedLayout american("us");
  const auto tables = namedTables();
  EXPECT_EQ(GetCharMessage(tables.keys.data(), 's'), 0x0100 | 's');
  EXPECT_EQ(GetCharMessage(tables.keys.data(), 0xFF), 0xFFFF);
  EXPECT_EQ(GetCharModifiers(tables.modifiers.data(), 'S'), kShiftModifier);
  EXPECT_EQ(GetCharModifiers(tables.modifiers.data(), 's'), 0);
}

}  // namespace
}  // namespace veltrix
