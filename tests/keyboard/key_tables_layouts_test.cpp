#include <gtest/gtest.h>

#include <array>
#include <bitset>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "keyboard/key_tables.h"
#include "keyboard/layout_access.h"
#include "platform/mac_roman.h"
#include "tests/keyboard/key_tables_made.h"
#include "tests/support/scoped_layout.h"

namespace veltrix {
namespace {

using testing::ScopedLayout;

constexpr auto kCombinations = std::to_array<std::uint8_t>(
    {0, kShift, kCapsLock, kOption, kOption | kShift, kOption | kCapsLock, kControl});

// What is typed by a key alone, when that is a character of Mac OS Roman.
std::optional<std::uint8_t> typedAlone(const KeyboardLayout& layout, std::uint8_t key,
                                       std::uint8_t modifiers) {
  std::uint32_t state = 0;
  const auto unit = translateVirtualKey(layout, key, modifiers, state);
  return unit && *unit != 0 ? macRomanFromUnicode(*unit) : std::nullopt;
}

// Said here again, in another way than the tables' own.
int effortOf(std::uint8_t modifiers) {
  return ((modifiers & kShift) != 0 ? 1 : 0) + ((modifiers & kOption) != 0 ? 2 : 0) +
         ((modifiers & kControl) != 0 ? 4 : 0) + ((modifiers & kCapsLock) != 0 ? 8 : 0) +
         ((modifiers & kCommand) != 0 ? 16 : 0);
}

bool inKeypadBlock(std::uint8_t key) {
  return key >= 64 && key <= 95;
}

// Calls `visit` with the key, the modifiers and the character of each way to type one.
template <typename Visit>
void forEachWay(const KeyboardLayout& layout, Visit visit) {
  for (const auto modifiers : kCombinations) {
    for (std::uint8_t key = 0; key < 128; ++key) {
      if (const auto character = typedAlone(layout, key, modifiers)) {
        visit(key, modifiers, *character);
      }
    }
  }
}

// The characters that the tables do not type in the best way: every way of typing must be found again by the
// table's key, outside of the keypad when there is such a key, and there with the least effort.
std::bitset<kCharacters> wrongCharacters(const KeyboardLayout& layout, const Tables& tables) {
  std::bitset<kCharacters> wrong;
  forEachWay(layout, [&](std::uint8_t key, std::uint8_t modifiers, std::uint8_t character) {
    const auto tableKey = tables.keys[character];
    const auto tableModifiers = tables.modifiers[character];
    const bool typesIt = tableKey != kNone && typedAlone(layout, tableKey, tableModifiers) == character;
    const bool better = inKeypadBlock(key) == inKeypadBlock(tableKey)
                            ? effortOf(modifiers) < effortOf(tableModifiers)
                            : inKeypadBlock(tableKey);
    if (!typesIt || better) {
      wrong.set(character);
    }
  });
  return wrong;
}

std::string nameOf(const ::testing::TestParamInfo<const char*>& layout) {
  return layout.param;
}

class KeyTablesOfLayout : public ::testing::TestWithParam<const char*> {
 protected:
  ScopedLayout fScope{GetParam()};
  const KeyboardLayout& fLayout = fScope.layout();
};

INSTANTIATE_TEST_SUITE_P(Layouts, KeyTablesOfLayout,
                         ::testing::Values("us", "gb", "de", "fr", "dvorak", "es", "jp", "ru"), nameOf);

TEST_P(KeyTablesOfLayout, TypingTablesFindEveryCharacterByItsEasiestKey) {
  EXPECT_TRUE(wrongCharacters(fLayout, typingTables(fLayout)).none());
}

TEST_P(KeyTablesOfLayout, TypingTablesHoldNothingElse) {
  std::bitset<kCharacters> possible;
  forEachWay(fLayout, [&](std::uint8_t, std::uint8_t, std::uint8_t character) { possible.set(character); });
  EXPECT_GT(possible.count(), 30U);
  const auto tables = typingTables(fLayout);
  for (std::size_t character = 0; character < kCharacters; ++character) {
    EXPECT_EQ(tables.keys[character] != kNone, possible[character]) << character;
  }
}

TEST_P(KeyTablesOfLayout, WithTheKeypadPreferredDigitsAreOnIt) {
  for (const auto& tables : {typingTables(fLayout, true), namedTables(1)}) {
    const std::uint8_t keypad[] = {82, 83, 84, 85, 86, 87, 88, 89, 91, 92};
    for (std::uint8_t digit = 0; digit < 10; ++digit) {
      EXPECT_EQ(tables.keys[std::size_t{'0'} + digit], keypad[digit]);
      EXPECT_EQ(tables.modifiers[std::size_t{'0'} + digit], 0);
    }
    EXPECT_EQ(tables.keys[0x03], 76);
  }
}

// What the walk in one sequence of dead keys meets: the characters that keys in the middle of a sequence gave
// and those that they would have given alone, and characters that stand for others.
std::bitset<kCharacters> touchedBySequences(const KeyboardLayout& layout) {
  std::bitset<kCharacters> touched;
  std::uint32_t state = 0;
  for (const auto modifiers : kCombinations) {
    for (std::uint8_t key = 0; key < 128; ++key) {
      const bool inSequence = state != 0;
      const auto unit = translateVirtualKey(layout, key, modifiers, state);
      if (unit && !macRomanFromUnicode(*unit)) {
        touched.set(kMacRomanSubstitute);
      }
      if (!inSequence) {
        continue;
      }
      if (unit) {
        touched.set(macRomanOrSubstitute(*unit));
      }
      if (const auto alone = typedAlone(layout, key, modifiers)) {
        touched.set(*alone);
      }
    }
  }
  return touched;
}

// A key that gave a character during the walk in one sequence.
struct Step {
  std::uint8_t key;
  std::uint8_t modifiers;
  std::uint8_t character;

  // The step that the tables take has the least of these among those of its character.
  std::pair<bool, int> rank() const { return {inKeypadBlock(key), effortOf(modifiers)}; }
};

std::vector<Step> stepsInOneSequence(const KeyboardLayout& layout) {
  std::vector<Step> steps;
  std::uint32_t state = 0;
  for (const auto modifiers : kCombinations) {
    for (std::uint8_t key = 0; key < 128; ++key) {
      if (const auto unit = translateVirtualKey(layout, key, modifiers, state)) {
        steps.push_back({key, modifiers, macRomanOrSubstitute(*unit)});
      }
    }
  }
  return steps;
}

TEST_P(KeyTablesOfLayout, OnlyCharactersAfterDeadKeysAreWrongInOneSequence) {
  const auto wrong = wrongCharacters(fLayout, namedTables());
  EXPECT_TRUE((wrong & ~touchedBySequences(fLayout)).none()) << wrong;
}

// A character is wrong when the best step of the walk that gave it gives something else alone, or when the
// character has a better way alone that the walk did not come by.
TEST_P(KeyTablesOfLayout, ExactlyThoseAreWrongInOneSequenceThatItTookAwayOrMadeUp) {
  const auto steps = stepsInOneSequence(fLayout);
  std::bitset<kCharacters> expected;
  forEachWay(fLayout, [&](std::uint8_t key, std::uint8_t modifiers, std::uint8_t character) {
    const Step* best = nullptr;
    for (const auto& step : steps) {
      if (step.character == character && (best == nullptr || step.rank() < best->rank())) {
        best = &step;
      }
    }
    if (best == nullptr || typedAlone(fLayout, best->key, best->modifiers) != character ||
        Step{key, modifiers, character}.rank() < best->rank()) {
      expected.set(character);
    }
  });
  EXPECT_EQ(wrongCharacters(fLayout, namedTables()), expected);
}

TEST_P(KeyTablesOfLayout, BothKindsOfTablesAgreeWhereNoSequenceTouchesACharacter) {
  const auto touched = touchedBySequences(fLayout);
  const auto named = namedTables();
  const auto typing = typingTables(fLayout);
  for (std::size_t character = 1; character < kCharacters; ++character) {
    if (!touched[character]) {
      EXPECT_EQ(named.keys[character], typing.keys[character]) << character;
      EXPECT_EQ(named.modifiers[character], typing.modifiers[character]) << character;
    }
  }
}

// Layouts on which a dead key is never followed by a key that composes with it, or that have none.
class KeyTablesWithoutDeadKeys : public KeyTablesOfLayout {};

INSTANTIATE_TEST_SUITE_P(Layouts, KeyTablesWithoutDeadKeys, ::testing::Values("us", "dvorak", "jp"), nameOf);

TEST_P(KeyTablesWithoutDeadKeys, EveryCharacterIsFoundByItsEasiestKeyInOneSequenceToo) {
  EXPECT_TRUE(wrongCharacters(fLayout, namedTables()).none());
}

TEST(KeyTables, WithoutDeadKeysTheOnlyWrongCharacterIsTheSubstitute) {
  const ScopedLayout russian("ru");
  const auto tables = namedTables();
  std::bitset<kCharacters> substitute;
  substitute.set(kMacRomanSubstitute);
  EXPECT_EQ(wrongCharacters(russian.layout(), tables), substitute);
  EXPECT_EQ(tables.keys['?'], 0);  // a letter that Mac OS Roman does not have
  EXPECT_EQ(typingTables(russian.layout()).keys['?'], 26);
}

}  // namespace
}  // namespace veltrix
