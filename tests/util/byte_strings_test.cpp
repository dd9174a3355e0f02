#include "util/byte_strings.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <string>

namespace veltrix {
namespace {

constexpr unsigned char kUntouched = 0xEE;

// A Pascal string in a buffer of the largest size, with a known filling behind the text.
class Pascal {
 public:
  explicit Pascal(const std::string& text = "") {
    fBytes.fill(kUntouched);
    fBytes[0] = static_cast<unsigned char>(text.size());
    std::copy(text.begin(), text.end(), fBytes.begin() + 1);
  }
  unsigned char* bytes() { return fBytes.data(); }
  std::string text() const { return {fBytes.begin() + 1, fBytes.begin() + 1 + fBytes[0]}; }
  unsigned char at(std::size_t index) const { return fBytes[index]; }

 private:
  std::array<unsigned char, 600> fBytes = {};
};

// A terminated string in such a buffer.
class Terminated {
 public:
  explicit Terminated(const std::string& text = "") {
    fBytes.fill(static_cast<char>(kUntouched));
    std::memcpy(fBytes.data(), text.c_str(), text.size() + 1);
  }
  char* bytes() { return fBytes.data(); }
  std::string text() const { return fBytes.data(); }
  bool untouchedFrom(std::size_t index) const {
    return std::all_of(fBytes.begin() + static_cast<std::ptrdiff_t>(index), fBytes.end(),
                       [](char each) { return each == static_cast<char>(kUntouched); });
  }

 private:
  std::array<char, 600> fBytes = {};
};

TEST(PStringCopy, CopiesTextAndLength) {
  Pascal source("trackball");
  Pascal destination;
  PStringCopy(source.bytes(), destination.bytes(), 63);
  EXPECT_EQ(destination.text(), "trackball");
}

TEST(PStringCopy, StopsAtTheLimit) {
  Pascal source(std::string(200, 'x'));
  Pascal destination;
  PStringCopy(source.bytes(), destination.bytes(), 63);
  EXPECT_EQ(destination.at(0), 63);
  EXPECT_EQ(destination.at(63), 'x');
  EXPECT_EQ(destination.at(64), kUntouched);
}

TEST(PStringCopy, LimitOfZeroOrBelowGivesAnEmptyString) {
  for (const int max : {0, -1, -32768}) {
    Pascal source("abc");
    Pascal destination("old");
    PStringCopy(source.bytes(), destination.bytes(), static_cast<std::int16_t>(max));
    EXPECT_EQ(destination.text(), "") << max;
    EXPECT_EQ(destination.at(1), 'o') << max;
  }
}

TEST(PStringCopy, LimitAboveALengthByteIsHarmless) {
  Pascal source(std::string(255, 'x'));
  Pascal destination;
  PStringCopy(source.bytes(), destination.bytes(), 32767);
  EXPECT_EQ(destination.text(), std::string(255, 'x'));
  EXPECT_EQ(destination.at(256), kUntouched);
}

TEST(PStringCat, AppendsAndReturnsTheNewLength) {
  Pascal source("ball");
  Pascal destination("track");
  EXPECT_EQ(PStringCat(source.bytes(), destination.bytes(), 63), 9);
  EXPECT_EQ(destination.text(), "trackball");
}

TEST(PStringCat, AppendsOnlyWhatFits) {
  Pascal source("ball");
  Pascal destination("track");
  EXPECT_EQ(PStringCat(source.bytes(), destination.bytes(), 7), 7);
  EXPECT_EQ(destination.text(), "trackba");
  EXPECT_EQ(destination.at(8), kUntouched);
}

TEST(PStringCat, FullDestinationGetsNothing) {
  Pascal source("ball");
  Pascal destination("track");
  EXPECT_EQ(PStringCat(source.bytes(), destination.bytes(), 5), 5);
  EXPECT_EQ(destination.text(), "track");
}

TEST(PStringCat, DestinationLongerThanTheLimitStaysAsItIs) {
  Pascal source("ball");
  Pascal destination("track");
  EXPECT_EQ(PStringCat(source.bytes(), destination.bytes(), 3), 5);
  EXPECT_EQ(destination.text(), "track");
}

TEST(PStringCat, LimitOfZeroOrBelowAppendsNothing) {
  for (const int max : {0, -1, -32768}) {
    Pascal source("ball");
    Pascal destination("track");
    EXPECT_EQ(PStringCat(source.bytes(), destination.bytes(), static_cast<std::int16_t>(max)), 5) << max;
    EXPECT_EQ(destination.text(), "track") << max;
  }
}

TEST(PStringCat, NeverGrowsBeyondALengthByte) {
  Pascal source(std::string(200, 'b'));
  Pascal destination(std::string(200, 'a'));
  EXPECT_EQ(PStringCat(source.bytes(), destination.bytes(), 1000), 255);
  EXPECT_EQ(destination.text(), std::string(200, 'a') + std::string(55, 'b'));
  EXPECT_EQ(destination.at(256), kUntouched);
}

TEST(CStringPCopy, CopiesUntilTheTerminator) {
  Pascal destination("something longer");
  EXPECT_EQ(CStringPCopy("abc", destination.bytes(), 63), 3);
  EXPECT_EQ(destination.text(), "abc");
}

TEST(CStringPCopy, StopsAtTheLimit) {
  Pascal destination;
  EXPECT_EQ(CStringPCopy("abcdef", destination.bytes(), 4), 4);
  EXPECT_EQ(destination.text(), "abcd");
  EXPECT_EQ(destination.at(5), kUntouched);
}

TEST(CStringPCopy, LimitOfZeroOrBelowGivesAnEmptyString) {
  for (const int max : {0, -1, -32768}) {
    Pascal destination("old");
    EXPECT_EQ(CStringPCopy("abc", destination.bytes(), static_cast<std::int16_t>(max)), 0) << max;
    EXPECT_EQ(destination.text(), "") << max;
  }
}

TEST(CStringPCopy, KeepsAtMostWhatALengthByteCanSay) {
  Pascal destination;
  EXPECT_EQ(CStringPCopy(std::string(400, 'x').c_str(), destination.bytes(), 400), 255);
  EXPECT_EQ(destination.at(256), kUntouched);
}

TEST(CStringPCat, AppendsUntilTheTerminator) {
  Pascal destination("track");
  EXPECT_EQ(CStringPCat("ball", destination.bytes(), 63), 9);
  EXPECT_EQ(destination.text(), "trackball");
}

TEST(CStringPCat, StopsAtTheLimit) {
  Pascal destination("track");
  EXPECT_EQ(CStringPCat("ball", destination.bytes(), 6), 6);
  EXPECT_EQ(destination.text(), "trackb");
}

TEST(CStringPCat, LimitAtOrBelowTheLengthAppendsNothing) {
  for (const int max : {5, 3, 0, -1, -32768}) {
    Pascal destination("track");
    EXPECT_EQ(CStringPCat("ball", destination.bytes(), static_cast<std::int16_t>(max)), 5) << max;
    EXPECT_EQ(destination.text(), "track") << max;
  }
}

TEST(CStringPCat, NeverGrowsBeyondALengthByte) {
  Pascal destination(std::string(254, 'a'));
  EXPECT_EQ(CStringPCat("bcd", destination.bytes(), 32767), 255);
  EXPECT_EQ(destination.text(), std::string(254, 'a') + "b");
}

TEST(CStringCopy, CopiesUntilTheTerminator) {
  Terminated destination("something longer");
  EXPECT_EQ(CStringCopy("abc", destination.bytes(), 63), 3);
  EXPECT_EQ(destination.text(), "abc");
}

TEST(CStringCopy, StopsAtTheLimitAndTerminates) {
  Terminated destination;
  EXPECT_EQ(CStringCopy("abcdef", destination.bytes(), 4), 4);
  EXPECT_EQ(destination.text(), "abcd");
  EXPECT_TRUE(destination.untouchedFrom(5));
}

TEST(CStringCopy, LimitOfZeroOrBelowWritesOnlyATerminator) {
  for (const int max : {0, -1, -32768}) {
    Terminated destination("x");
    EXPECT_EQ(CStringCopy("abc", destination.bytes(), static_cast<std::int16_t>(max)), 0) << max;
    EXPECT_EQ(destination.text(), "") << max;
    EXPECT_TRUE(destination.untouchedFrom(2)) << max;
  }
}

TEST(CStringCat, AppendsAndTerminates) {
  Terminated destination("track");
  EXPECT_EQ(CStringCat("ball", destination.bytes(), 63), 9);
  EXPECT_EQ(destination.text(), "trackball");
  EXPECT_TRUE(destination.untouchedFrom(10));
}

TEST(CStringCat, StopsAtTheLimit) {
  Terminated destination("track");
  EXPECT_EQ(CStringCat("ball", destination.bytes(), 7), 7);
  EXPECT_EQ(destination.text(), "trackba");
  EXPECT_TRUE(destination.untouchedFrom(8));
}

TEST(CStringCat, DestinationLongerThanTheLimitIsCutThere) {
  Terminated destination("trackball");
  EXPECT_EQ(CStringCat("s", destination.bytes(), 5), 5);
  EXPECT_EQ(destination.text(), "track");
}

TEST(CStringCat, LimitOfZeroOrBelowWritesOnlyATerminator) {
  for (const int max : {0, -1, -32768}) {
    Terminated destination("x");
    EXPECT_EQ(CStringCat("abc", destination.bytes(), static_cast<std::int16_t>(max)), 0) << max;
    EXPECT_EQ(destination.text(), "") << max;
  }
}

std::int16_t compare(const std::string& a, const std::string& b) {
  Pascal first(a);
  Pascal second(b);
  return PStringCmp(first.bytes(), second.bytes());
}

TEST(PStringCmp, FoldsOnlyTheEnglishLetters) {
  EXPECT_EQ(compare("VeltrixHelper", "vELTRIXhELPER"), 0);
  EXPECT_EQ(compare("@", "`"), '@' - '`');  // beside A and a
  EXPECT_EQ(compare("[", "{"), '[' - '{');  // beside Z and z
  EXPECT_NE(compare("\xC4", "\xE4"), 0);    // a letter with an accent in both cases
}

TEST(PStringCmp, FirstDifferenceDecides) {
  EXPECT_EQ(compare("aBz", "AcA"), 'b' - 'c');
  EXPECT_EQ(compare("\xFF", "a"), 0xFF - 'a');
}

TEST(PStringCmp, LengthDecidesWhenTheSharedPartAgrees) {
  EXPECT_EQ(compare("helper", "helpers"), -1);
  EXPECT_EQ(compare(std::string(255, 'x'), ""), 255);
  EXPECT_EQ(compare("", ""), 0);
}

TEST(PStringCmp, ZeroBytesAreCharacters) {
  EXPECT_EQ(compare(std::string("a\0b", 3), std::string("a\0c", 3)), -1);
}

TEST(CStringCmp, StopsAtTheEndOfTheFirst) {
  EXPECT_EQ(CStringCmp("abc", "abcd"), 0 - 'd');
  EXPECT_EQ(CStringCmp("abcd", "abc"), 'd');
  EXPECT_EQ(CStringCmp("abc", "ABC"), 0);
  EXPECT_EQ(CStringCmp("", ""), 0);
}

TEST(CStringCmp, BytesAreUnsigned) {
  EXPECT_EQ(CStringCmp("\xE4", "\xC4"), 0xE4 - 0xC4);
}

RC_GTEST_PROP(ByteStrings, CatThenCompareAgreesWithStandardStrings, ()) {
  const auto text = [] { return rc::gen::container<std::string>(rc::gen::inRange<char>('a', 'd')); };
  const std::string a = (*text()).substr(0, 200);
  const std::string b = (*text()).substr(0, 200);
  const auto max = *rc::gen::inRange<std::int16_t>(-5, 300);
  Pascal destination(a);
  Pascal source(b);
  const std::int16_t length = PStringCat(source.bytes(), destination.bytes(), max);
  const auto limit = static_cast<std::size_t>(std::clamp<int>(max, 0, 255));
  const std::string expected = a.size() >= limit ? a : (a + b).substr(0, limit);
  RC_ASSERT(destination.text() == expected);
  RC_ASSERT(static_cast<std::size_t>(length) == expected.size());
  RC_ASSERT((compare(a, b) == 0) == (a == b));
}

}  // namespace
}  // namespace veltrix
