#include "util/path_characters.h"

#include <gtest/gtest.h>

#include <rapidcheck/gtest.h>
#include <limits>

namespace veltrix {
namespace {

TEST(IllegalPathCharacters, BecomeDashes) {
  EXPECT_EQ(stringByReplacingIllegalPathCharacters("a/b:c"), "a-b-c");
  EXPECT_EQ(stringByReplacingIllegalPathCharacters("\"*/:?\\|"), "-------");
}

TEST(IllegalPathCharacters, AngleBracketsStay) {
  EXPECT_EQ(stringByReplacingIllegalPathCharacters("<a/b>"), "<a-b>");
}

TEST(IllegalPathCharacters, AnEmptyTextStaysEmpty) {
  EXPECT_EQ(stringByReplacingIllegalPathCharacters(""), "");
}

TEST(IllegalPathCharacters, CharactersBeyondAsciiStay) {
  EXPECT_EQ(stringByReplacingIllegalPathCharacters("Größe: 3 № ½ 😀?"), "Größe- 3 № ½ 😀-");
}

TEST(IllegalPathCharacters, ZeroBytesStay) {
  EXPECT_EQ(stringByReplacingIllegalPathCharacters(std::string_view("a\0:b", 4)),
            std::string_view("a\0-b", 4));
}

TEST(IllegalPathCharacters, NoMemoryGivesNothing) {
  // No text can be that long; it is never read, for the room is asked for first.
  const volatile std::size_t tooLong = std::numeric_limits<std::ptrdiff_t>::max();
  EXPECT_EQ(stringByReplacingIllegalPathCharacters(std::string_view("a", tooLong)), std::nullopt);
}

RC_GTEST_PROP(IllegalPathCharacters, OnlyTheSevenChange, (const std::string& text)) {
  const auto result = stringByReplacingIllegalPathCharacters(text);
  RC_ASSERT(result.has_value());
  RC_ASSERT(result->size() == text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool illegal = std::string_view("\"*/:?\\|").find(text[i]) != std::string_view::npos;
    RC_ASSERT((*result)[i] == (illegal ? '-' : text[i]));
  }
}

}  // namespace
}  // namespace veltrix
