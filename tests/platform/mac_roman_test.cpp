#include "platform/mac_roman.h"

#include <gtest/gtest.h>

#include <set>

namespace veltrix {
namespace {

TEST(MacRoman, EveryByteIsACharacterOfItsOwnAndComesBack) {
  std::set<char16_t> seen;
  for (unsigned byte = 0; byte < 256; ++byte) {
    const auto character = unicodeFromMacRoman(static_cast<std::uint8_t>(byte));
    EXPECT_TRUE(seen.insert(character).second) << byte;
    EXPECT_EQ(macRomanFromUnicode(character), byte);
  }
}

TEST(MacRoman, AsciiIsItself) {
  for (char16_t character = 0; character < 128; ++character) {
    EXPECT_EQ(macRomanFromUnicode(character), character);
  }
}

TEST(MacRoman, KnowsWhatEveryKeyboardNeeds) {
  EXPECT_EQ(macRomanFromUnicode(u'€'), 0xDB);
  EXPECT_EQ(macRomanFromUnicode(u'Ä'), 0x80);
  EXPECT_EQ(macRomanFromUnicode(u'ß'), 0xA7);
  EXPECT_EQ(macRomanFromUnicode(u'é'), 0x8E);
  EXPECT_EQ(macRomanFromUnicode(u'£'), 0xA3);
  EXPECT_EQ(macRomanFromUnicode(u'\u00A0'), 0xCA);
  EXPECT_EQ(macRomanFromUnicode(u'ˇ'), 0xFF);
}

TEST(MacRoman, AQuestionMarkStandsForWhatItDoesNotHave) {
  EXPECT_EQ(macRomanFromUnicode(u'ф'), std::nullopt);
  EXPECT_EQ(macRomanFromUnicode(u'¤'), std::nullopt);  // had the euro sign's place once
  EXPECT_EQ(macRomanOrSubstitute(u'ф'), '?');
  EXPECT_EQ(macRomanOrSubstitute(u'?'), '?');
  EXPECT_EQ(macRomanOrSubstitute(u'é'), 0x8E);
}

}  // namespace
}  // namespace veltrix
