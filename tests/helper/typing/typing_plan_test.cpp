#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <linux/input-event-codes.h>
#include <rapidcheck/gtest.h>

#include <cstdlib>
#include <set>
#include <tuple>

#include "driverlink/packets.h"
#include "helper/typing/keyboard_model.h"
#include "platform/text_encoding.h"
#include "tests/helper/typing/typed_keyboard.h"

namespace veltrix {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::KeyReader;
using testing::TypedKeyboard;
using testing::utf8;

// What a program makes of keys that hold Control and Shift with u before a number and a space after it.
std::string readWithNumbers(KeyReader& reader, const std::vector<KeyPress>& presses) {
  std::string text;
  std::string number;
  bool inNumber = false;
  for (const auto& press : presses) {
    const std::string typed = reader.read(press);
    const bool opens = reader.hadHeld(XKB_MOD_NAME_CTRL) && reader.hadHeld(XKB_MOD_NAME_SHIFT);
    if (opens) {
      EXPECT_FALSE(inNumber);
      inNumber = true;
      number.clear();
    } else if (!inNumber) {
      text += typed;
    } else if (typed == " ") {
      appendUtf8(text, static_cast<char32_t>(std::strtoul(number.c_str(), nullptr, 16)));
      inNumber = false;
    } else {
      EXPECT_EQ(typed.find_first_not_of("0123456789abcdef"), std::string::npos) << typed;
      number += typed;
    }
  }
  EXPECT_FALSE(inNumber);
  return text;
}

class TypingPlanOn : public ::testing::TestWithParam<const char*> {};

TEST_P(TypingPlanOn, EveryCharacterOfTheLayoutArrives) {
  const TypedKeyboard keyboard(GetParam());
  const auto model = keyboard.model();
  const auto characters = keyboard.characters();
  ASSERT_GT(characters.size(), 90U);
  for (const auto character : characters) {
    const std::string text = utf8({character});
    const auto plan = planTyping(model, text, UnicodeInput::kNone);
    EXPECT_THAT(plan.missing, IsEmpty()) << text;
    KeyReader reader(keyboard);
    EXPECT_EQ(reader.read(plan.presses), text);
    EXPECT_TRUE(reader.isAtRest()) << text;
  }
}

TEST_P(TypingPlanOn, WhatArrivesIsTheText) {
  const TypedKeyboard keyboard(GetParam());
  const auto model = keyboard.model();
  auto characters = keyboard.characters();
  characters.insert(characters.end(), {U'\n', U'\t'});
  rc::check([&] {
    const auto chosen = *rc::gen::container<std::vector<char32_t>>(rc::gen::elementOf(characters));
    const std::string text = utf8({chosen.begin(), chosen.end()});
    const auto plan = planTyping(model, text, UnicodeInput::kNone);
    RC_ASSERT(plan.missing.empty());
    KeyReader reader(keyboard);
    RC_ASSERT(reader.read(plan.presses) == text);
    RC_ASSERT(reader.isAtRest());
  });
}

TEST_P(TypingPlanOn, CharactersOutsideTheLayoutArriveByTheirNumbers) {
  const TypedKeyboard keyboard(GetParam());
  const auto model = keyboard.model();
  rc::check([&] {
    const auto chosen = *rc::gen::container<std::vector<char32_t>>(rc::gen::suchThat(
        rc::gen::oneOf(rc::gen::inRange<char32_t>(0x20, 0x7F), rc::gen::inRange<char32_t>(0xA0, 0x2FFF),
                       rc::gen::inRange<char32_t>(0x1F300, 0x1F700)),
        [](char32_t character) { return !isSurrogate(character); }));
    const auto plan = planTyping(model, utf8({chosen.begin(), chosen.end()}), UnicodeInput::kControlShiftU);
    const std::set<char32_t> missing(plan.missing.begin(), plan.missing.end());
    RC_ASSERT(missing.size() == plan.missing.size());
    std::u32string expected;
    std::copy_if(chosen.begin(), chosen.end(), std::back_inserter(expected),
                 [&](char32_t character) { return missing.count(character) == 0; });
    KeyReader reader(keyboard);
    RC_ASSERT(readWithNumbers(reader, plan.presses) == utf8(expected));
    RC_ASSERT(reader.isAtRest());
    const bool typesLetters = !model.keysForCharacter(U'a').empty();
    RC_ASSERT(!typesLetters || missing.empty());
  });
}

TEST_P(TypingPlanOn, BytesOfAnyKindLeaveNothingDown) {
  const TypedKeyboard keyboard(GetParam());
  const auto model = keyboard.model();
  rc::check([&](const std::string& bytes) {
    const auto plan = planTyping(model, bytes, UnicodeInput::kControlShiftU);
    KeyReader reader(keyboard);
    reader.read(plan.presses);
    RC_ASSERT(reader.isAtRest());
    RC_ASSERT(!firstBadUtf8(bytes) ||
              std::count(plan.missing.begin(), plan.missing.end(), char32_t{0xFFFD}) == 1);
  });
}

constexpr const char* kLayouts[] = {"us", "gb", "de",     "fr", "us:dvorak", "us:intl",
                                    "es", "jp", "de:neo", "ru", "gr",        "ch:fr"};
INSTANTIATE_TEST_SUITE_P(Layouts, TypingPlanOn, ::testing::ValuesIn(kLayouts), testing::nameOfLayout);

using Locks = std::vector<std::uint16_t>;  // the keys that lock something

// With those locks on before the text and after it.
class TypingPlanUnderLocks : public ::testing::TestWithParam<std::tuple<const char*, Locks>> {
 protected:
  KeyReader reader() const {
    KeyReader reader(keyboard);
    for (const auto key : std::get<1>(GetParam())) {
      reader.lock(key);
    }
    return reader;
  }
  KeyboardModel model() const {
    auto model = keyboard.model();
    model.setLamps(reader().lamps());
    return model;
  }

  const TypedKeyboard keyboard{std::get<0>(GetParam())};
};

TEST_P(TypingPlanUnderLocks, EveryCharacterOfTheLayoutArrives) {
  const auto locked = model();
  for (const auto character : keyboard.characters()) {
    const std::string text = utf8({character});
    const auto plan = planTyping(locked, text, UnicodeInput::kNone);
    EXPECT_THAT(plan.missing, IsEmpty()) << text;
    auto program = reader();
    EXPECT_EQ(program.read(plan.presses), text);
    EXPECT_TRUE(program.isAtRest()) << text;
  }
}

TEST_P(TypingPlanUnderLocks, WhatArrivesIsTheText) {
  const auto locked = model();
  auto characters = keyboard.characters();
  characters.insert(characters.end(), {U'\n', U'\t'});
  rc::check([&] {
    const auto chosen = *rc::gen::container<std::vector<char32_t>>(rc::gen::elementOf(characters));
    const std::string text = utf8({chosen.begin(), chosen.end()});
    const auto plan = planTyping(locked, text, UnicodeInput::kNone);
    RC_ASSERT(plan.missing.empty());
    auto program = reader();
    RC_ASSERT(program.read(plan.presses) == text);
    RC_ASSERT(program.isAtRest());
  });
}

TEST_P(TypingPlanUnderLocks, NumbersArriveToo) {
  const auto locked = model();
  const auto plan = planTyping(locked, "世─", UnicodeInput::kControlShiftU);
  const bool typesLetters = !locked.keysForCharacter(U'a').empty();
  auto program = reader();
  EXPECT_EQ(readWithNumbers(program, plan.presses), typesLetters ? "世─" : "─");
  EXPECT_TRUE(program.isAtRest());
}

INSTANTIATE_TEST_SUITE_P(Layouts, TypingPlanUnderLocks,
                         ::testing::Combine(::testing::ValuesIn(kLayouts),
                                            ::testing::Values(Locks{KEY_CAPSLOCK}, Locks{KEY_NUMLOCK},
                                                              Locks{KEY_CAPSLOCK, KEY_NUMLOCK})),
                         [](const auto& test) {
                           std::string name = std::get<0>(test.param);
                           std::replace(name.begin(), name.end(), ':', '_');
                           for (const auto key : std::get<1>(test.param)) {
                             name += key == KEY_CAPSLOCK ? "Caps" : "Num";
                           }
                           return name;
                         });

TEST(TypingPlan, LockIsLiftedForThoseCharactersAloneThatItKeepsAway) {
  const TypedKeyboard german("de");
  auto model = german.model();
  model.setLamps(kCapsLockLamp);
  const auto plan = planTyping(model, "AßßẞA", UnicodeInput::kNone);
  std::vector<std::uint16_t> codes;
  std::transform(plan.presses.begin(), plan.presses.end(), std::back_inserter(codes),
                 [](const KeyPress& press) { return press.code; });
  EXPECT_THAT(codes, ElementsAre(KEY_A, KEY_CAPSLOCK, KEY_MINUS, KEY_MINUS, KEY_CAPSLOCK, KEY_MINUS, KEY_A));
  EXPECT_TRUE(plan.isComposed);
}

TEST(TypingPlan, KeepsTheOrderOfTheText) {
  const TypedKeyboard us("us");
  const auto plan = planTyping(us.model(), "aB\t\n", UnicodeInput::kNone);
  ASSERT_EQ(plan.presses.size(), 4U);
  EXPECT_EQ(plan.presses[0].code, KEY_A);
  EXPECT_EQ(plan.presses[1].code, KEY_B);
  EXPECT_EQ(plan.presses[1].modifiers[0], KEY_LEFTSHIFT);
  EXPECT_EQ(plan.presses[2].code, KEY_TAB);
  EXPECT_EQ(plan.presses[3].code, KEY_ENTER);
}

TEST(TypingPlan, TellsOfDeadKeysAndNumbers) {
  const TypedKeyboard french("fr");
  EXPECT_FALSE(planTyping(french.model(), "aé", UnicodeInput::kNone).isComposed);
  EXPECT_TRUE(planTyping(french.model(), "aê", UnicodeInput::kNone).isComposed);
  EXPECT_TRUE(planTyping(TypedKeyboard("us").model(), "я", UnicodeInput::kControlShiftU).isComposed);
}

TEST(TypingPlan, NewLineOfTwoCharactersIsOneReturn) {
  const auto plan = planTyping(TypedKeyboard("us").model(), "\r\n\r\r\n", UnicodeInput::kNone);
  EXPECT_EQ(plan.presses.size(), 3U);
  EXPECT_THAT(plan.missing, IsEmpty());
}

TEST(TypingPlan, MissingCharactersAreNamedOnceInTheOrderOfTheText) {
  const TypedKeyboard us("us");
  const auto plan = planTyping(us.model(), "яaжяb", UnicodeInput::kNone);
  EXPECT_THAT(plan.missing, ElementsAre(U'я', U'ж'));
  KeyReader reader(us);
  EXPECT_EQ(reader.read(plan.presses), "ab");
}

TEST(TypingPlan, BytesThatAreNoTextAreMissing) {
  const TypedKeyboard us("us");
  for (const auto unicode : {UnicodeInput::kNone, UnicodeInput::kControlShiftU}) {
    const auto plan = planTyping(us.model(), std::string("a\xFF\xC0\x80z\xED\xA0\x80\xF5"), unicode);
    EXPECT_THAT(plan.missing, ElementsAre(0xFFFD));
    KeyReader reader(us);
    EXPECT_EQ(reader.read(plan.presses), "az");
  }
}

TEST(TypingPlan, ControlCharactersAreNeverTyped) {
  using namespace std::string_literals;
  const TypedKeyboard us("us");
  for (const auto unicode : {UnicodeInput::kNone, UnicodeInput::kControlShiftU}) {
    const auto plan = planTyping(us.model(), "a\0\x1B\x08\x7F\xC2\x85z"s, unicode);
    EXPECT_THAT(plan.missing, ElementsAre(0x00, 0x1B, 0x08, 0x7F, 0x85));
    KeyReader reader(us);
    EXPECT_EQ(reader.read(plan.presses), "az");
  }
}

TEST(TypingPlan, NumberIsTypedByTheLayoutsOwnDigits) {
  const TypedKeyboard french("fr");
  const auto plan = planTyping(french.model(), "🖲", UnicodeInput::kControlShiftU);
  ASSERT_EQ(plan.presses.size(), 7U);  // u, 1f5b2, the space
  EXPECT_EQ(plan.presses[1].code, KEY_1);
  EXPECT_EQ(plan.presses[1].modifiers[0], KEY_LEFTSHIFT);
  KeyReader reader(french);
  EXPECT_EQ(readWithNumbers(reader, plan.presses), "🖲");
}

TEST(TypingPlan, NumberWithoutKeysForItsDigitsIsMissing) {
  const TypedKeyboard russian("ru");
  const auto plan = planTyping(russian.model(), "─🖲", UnicodeInput::kControlShiftU);
  EXPECT_THAT(plan.missing, ElementsAre(U'🖲'));  // 2500 has digits only, 1f5b2 letters too
  KeyReader reader(russian);
  EXPECT_EQ(readWithNumbers(reader, plan.presses), "─");
}

TEST(TypingPlan, EmptyTextIsAnEmptyPlan) {
  const auto plan = planTyping(TypedKeyboard("us").model(), "", UnicodeInput::kControlShiftU);
  EXPECT_THAT(plan.presses, IsEmpty());
  EXPECT_THAT(plan.missing, IsEmpty());
}

}  // namespace
}  // namespace veltrix
