#include "platform/letter_case.h"

#include <gtest/gtest.h>

#include "tests/support/thread_locale.h"

namespace veltrix {
namespace {

TEST(EqualIgnoringCase, FoldsLettersOfEveryAlphabetInEveryLocale) {
  const testing::ThreadLanguage none(std::nullopt);
  EXPECT_TRUE(equalIgnoringCase("VeltrixHelper", "vELTRIXhELPER"));
  EXPECT_TRUE(equalIgnoringCase("ÄÖÜ Éclair", "äöü éCLAIR"));
  EXPECT_TRUE(equalIgnoringCase("ТРЕКБОЛ", "трекбол"));
  EXPECT_TRUE(equalIgnoringCase("", ""));
}

TEST(EqualIgnoringCase, OtherTextsDiffer) {
  EXPECT_FALSE(equalIgnoringCase("Helper", "Helpers"));
  EXPECT_FALSE(equalIgnoringCase("Helpers", "Helper"));
  EXPECT_FALSE(equalIgnoringCase("ß", "SS"));
  EXPECT_FALSE(equalIgnoringCase("[", "{"));
  EXPECT_FALSE(equalIgnoringCase("a", ""));
}

TEST(EqualIgnoringCase, BytesThatAreNoTextEqualOnlyThemselves) {
  EXPECT_TRUE(equalIgnoringCase("a\xFF", "A\xFF"));
  EXPECT_FALSE(equalIgnoringCase("\xFF", "\xFE"));
  EXPECT_FALSE(equalIgnoringCase("\xC4", "Ä"));
}

}  // namespace
}  // namespace veltrix
