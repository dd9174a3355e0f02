#include "editor/typed_number.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <limits>

namespace veltrix {
namespace {

constexpr std::int32_t kHighest = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();

std::u16string wide(const std::string& ascii) {
  return {ascii.begin(), ascii.end()};
}

TEST(TypedInteger, IsTheLeadingInteger) {
  EXPECT_EQ(typedInteger(u"12"), 12);
  EXPECT_EQ(typedInteger(u"-12"), -12);
  EXPECT_EQ(typedInteger(u"+12"), 12);
  EXPECT_EQ(typedInteger(u" \t\n\v\f\r12"), 12);
  EXPECT_EQ(typedInteger(u"12ms"), 12);
  EXPECT_EQ(typedInteger(u"1 2"), 1);
  EXPECT_EQ(typedInteger(u"1.9"), 1);
  EXPECT_EQ(typedInteger(u"007"), 7);
}

TEST(TypedInteger, IsZeroWithoutDigits) {
  for (const char16_t* text : {u"", u" ", u"-", u"+", u"- 1", u"--1", u"+-1", u"a1", u"\u00A01", u"\u0661"}) {
    EXPECT_EQ(typedInteger(text), 0);
  }
}

TEST(TypedInteger, Saturates) {
  EXPECT_EQ(typedInteger(u"2147483647"), kHighest);
  EXPECT_EQ(typedInteger(u"2147483648"), kHighest);
  EXPECT_EQ(typedInteger(u"99999999999999999999999999"), kHighest);
  EXPECT_EQ(typedInteger(u"-2147483648"), kLowest);
  EXPECT_EQ(typedInteger(u"-2147483649"), kLowest);
  EXPECT_EQ(typedInteger(u"-99999999999999999999999999"), kLowest);
}

// What a person sees after having typed `typed` up to the caret, which is written as "|".
std::string shownAfter(const std::string& typed) {
  const std::size_t caret = typed.find('|');
  const std::u16string text = wide(typed.substr(0, caret) + typed.substr(caret + 1));
  const ShownNumber shown = shownNumber(typedInteger(text), text, static_cast<int>(caret));
  return shown.isSelected ? "[" + shown.text + "]"
                          : std::string(shown.text).insert(static_cast<std::size_t>(shown.caret), "|");
}

TEST(ShownNumber, KeepsTheCaretBehindTheDigitItStoodBehind) {
  EXPECT_EQ(shownAfter("12|3"), "12|3");
  EXPECT_EQ(shownAfter("05|"), "5|");
  EXPECT_EQ(shownAfter("0|5"), "|5");
  EXPECT_EQ(shownAfter("|05"), "|5");
  EXPECT_EQ(shownAfter("+1|2"), "1|2");
  EXPECT_EQ(shownAfter("  12|"), "12|");
  EXPECT_EQ(shownAfter("12a|"), "12|");
  EXPECT_EQ(shownAfter("1a|2"), "1|");
  EXPECT_EQ(shownAfter("00|"), "[0]");
}

TEST(ShownNumber, KeepsTheCaretBehindAMinus) {
  EXPECT_EQ(shownAfter("-|12"), "-|12");
  EXPECT_EQ(shownAfter("|-12"), "|-12");
  EXPECT_EQ(shownAfter("-01|"), "-1|");
}

TEST(ShownNumber, SelectsAZeroThatNobodyTyped) {
  EXPECT_EQ(shownAfter("|"), "[0]");
  EXPECT_EQ(shownAfter("a|"), "[0]");
  EXPECT_EQ(shownAfter("-|"), "[0]");
  EXPECT_EQ(shownAfter("-|0"), "[0]");
  EXPECT_EQ(shownAfter("0|"), "0|");
}

RC_GTEST_PROP(ShownNumber, ShowsTheNumberWithACaretInsideOfIt, (const std::u16string& typed)) {
  const auto caret = *rc::gen::inRange<int>(0, static_cast<int>(typed.size()) + 1);
  const std::int32_t value = typedInteger(typed);
  const ShownNumber shown = shownNumber(value, typed, caret);
  RC_ASSERT(shown.text == std::to_string(value));
  RC_ASSERT(shown.caret >= 0 && shown.caret <= static_cast<int>(shown.text.size()));
}

RC_GTEST_PROP(ShownNumber, LeavesWhatItShowsAsItIs, (std::int32_t value)) {
  const std::u16string typed = wide(std::to_string(value));
  const auto caret = *rc::gen::inRange<int>(0, static_cast<int>(typed.size()) + 1);
  const ShownNumber shown = shownNumber(typedInteger(typed), typed, caret);
  RC_ASSERT(wide(shown.text) == typed);
  RC_ASSERT(shown.caret == caret && !shown.isSelected);
}

}  // namespace
}  // namespace veltrix
