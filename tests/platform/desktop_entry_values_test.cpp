#include "platform/desktop_entry_values.h"

#include <gmock/gmock.h>
#include <rapidcheck/gtest.h>

namespace veltrix {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

RC_GTEST_PROP(EscapedValue, ReadsBackAsTheSame, (const std::string& text)) {
  RC_ASSERT(unescapedValue(escapedValue(text)) == text);
}

TEST(UnescapedList, EndsItemsAtSemicolonsThatAreNotEscaped) {
  EXPECT_THAT(unescapedList("a;b c;"), ElementsAre("a", "b c"));
  EXPECT_THAT(unescapedList("a\\;b;c"), ElementsAre("a;b", "c"));
  EXPECT_THAT(unescapedList("a\\\\;b"), ElementsAre("a\\", "b"));
  EXPECT_THAT(unescapedList("\\sa\\q\\"), ElementsAre(" a\\q\\"));
}

TEST(UnescapedList, HasNoEmptyItems) {
  EXPECT_THAT(unescapedList(""), IsEmpty());
  EXPECT_THAT(unescapedList(";;"), IsEmpty());
}

TEST(LanguageMatch, PrefersCountryAndModifierThenCountryThenModifierThenLanguage) {
  const char* const wanted = "sr_RS.UTF-8@latin";
  EXPECT_GT(languageMatch("sr_RS@latin", wanted), languageMatch("sr_RS", wanted));
  EXPECT_GT(languageMatch("sr_RS", wanted), languageMatch("sr@latin", wanted));
  EXPECT_GT(languageMatch("sr@latin", wanted), languageMatch("sr", wanted));
  EXPECT_GT(languageMatch("sr", wanted), languageMatch("", wanted));
  EXPECT_GT(languageMatch("", wanted), 0);
}

TEST(LanguageMatch, IsNoneForOtherLanguagesCountriesAndModifiers) {
  EXPECT_EQ(languageMatch("de", "fr_FR"), 0);
  EXPECT_EQ(languageMatch("de_AT", "de_DE"), 0);
  EXPECT_EQ(languageMatch("de_AT", "de"), 0);
  EXPECT_EQ(languageMatch("sr@latin", "sr_RS"), 0);
  EXPECT_EQ(languageMatch("@latin", "@latin"), 0);
}

TEST(LanguageMatch, CharacterSetsPlayNoPart) {
  EXPECT_EQ(languageMatch("de_DE.ISO-8859-1", "de_DE.UTF-8"), languageMatch("de_DE", "de_DE"));
}

}  // namespace
}  // namespace veltrix
