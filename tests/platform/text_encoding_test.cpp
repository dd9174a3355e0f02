#include "platform/text_encoding.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

namespace veltrix {
namespace {

std::string encoded(char32_t codePoint) {
  std::string out;
  appendUtf8(out, codePoint);
  return out;
}

TEST(TextEncoding, FindsTheFirstBadByte) {
  EXPECT_EQ(firstBadUtf8(""), std::nullopt);
  EXPECT_EQ(firstBadUtf8("plain ASCII that is longer than eight bytes"), std::nullopt);
  EXPECT_EQ(firstBadUtf8("\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80"), std::nullopt);
  EXPECT_EQ(firstBadUtf8("123456789\xFF"), 9U);
}

TEST(TextEncoding, RefusesWhatIsNotWellFormed) {
  for (const char* bad : {"\x80", "\xBF", "\xC0\x80", "\xC1\xBF", "\xC3", "\xC3(", "\xE0\x80\x80", "\xE2\x82",
                          "\xE2(\xA1", "\xED\xA0\x80", "\xED\xBF\xBF", "\xF0\x80\x80\x80", "\xF0\x9F\x98",
                          "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xFE", "\xFF"}) {
    EXPECT_EQ(firstBadUtf8(bad), 0U) << bad;
  }
}

TEST(TextEncoding, ConvertsUtf16OfBothOrders) {
  std::string out;
  EXPECT_EQ(appendUtf16AsUtf8(std::string_view("\0a\x20\xAC\xD8\x3D\xDE\x00", 8), ByteOrder::kBigEndian, out),
            std::nullopt);
  EXPECT_EQ(out, "a\xE2\x82\xAC\xF0\x9F\x98\x80");
  out.clear();
  EXPECT_EQ(
      appendUtf16AsUtf8(std::string_view("a\0\xAC\x20\x3D\xD8\x00\xDE", 8), ByteOrder::kLittleEndian, out),
      std::nullopt);
  EXPECT_EQ(out, "a\xE2\x82\xAC\xF0\x9F\x98\x80");
}

TEST(TextEncoding, RefusesHalfPairsAndHalfUnits) {
  std::string out;
  EXPECT_EQ(appendUtf16AsUtf8(std::string_view("\0a\xD8\x3D", 4), ByteOrder::kBigEndian, out), 2U);
  EXPECT_EQ(appendUtf16AsUtf8(std::string_view("\xD8\x3D\0a", 4), ByteOrder::kBigEndian, out), 0U);
  EXPECT_EQ(appendUtf16AsUtf8(std::string_view("\xDE\x00\xD8\x3D", 4), ByteOrder::kBigEndian, out), 0U);
  EXPECT_EQ(appendUtf16AsUtf8(std::string_view("\0a\0", 3), ByteOrder::kBigEndian, out), 2U);
}

TEST(TextEncoding, CountsUnitsOfAPrefix) {
  const std::string text = "a\xE2\x82\xAC\xF0\x9F\x98\x80z";
  EXPECT_EQ(utf16Units(text, 0), 0U);
  EXPECT_EQ(utf16Units(text, 1), 1U);
  EXPECT_EQ(utf16Units(text, 4), 2U);
  EXPECT_EQ(utf16Units(text, 8), 4U);
  EXPECT_EQ(utf16Units(text, text.size()), 5U);
}

RC_GTEST_PROP(TextEncoding, EveryCharacterSurvivesBothForms, ()) {
  const auto point = *rc::gen::suchThat(rc::gen::inRange<std::uint32_t>(0, 0x110000),
                                        [](std::uint32_t c) { return !isSurrogate(c); });
  const std::string utf8 = encoded(point);
  std::size_t at = 0;
  RC_ASSERT(nextUtf8(utf8, at) == static_cast<char32_t>(point));
  RC_ASSERT(at == utf8.size());
  std::string back;
  RC_ASSERT(!appendUtf16AsUtf8(utf16BigEndian(utf8), ByteOrder::kBigEndian, back).has_value());
  RC_ASSERT(back == utf8);
}

}  // namespace
}  // namespace veltrix
