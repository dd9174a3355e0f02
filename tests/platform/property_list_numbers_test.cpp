#include "platform/property_list_numbers.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <locale>

namespace veltrix::plist {
namespace {

constexpr std::int64_t kLowest = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t kHighest = std::numeric_limits<std::int64_t>::max();

TEST(PropertyListNumbers, ReadsDecimalAndHexadecimalIntegers) {
  EXPECT_EQ(parseInteger("0"), 0);
  EXPECT_EQ(parseInteger("-12"), -12);
  EXPECT_EQ(parseInteger("+12"), 12);
  EXPECT_EQ(parseInteger(" \n\t12\r\n"), 12);
  EXPECT_EQ(parseInteger("007"), 7);
  EXPECT_EQ(parseInteger("0x1F"), 31);
  EXPECT_EQ(parseInteger("0Xff"), 255);
  EXPECT_EQ(parseInteger("-0x10"), -16);
}

TEST(PropertyListNumbers, ReadsIntegersUpToTheEdgesOf64Bits) {
  EXPECT_EQ(parseInteger("9223372036854775807"), kHighest);
  EXPECT_EQ(parseInteger("-9223372036854775808"), kLowest);
  EXPECT_EQ(parseInteger("0x7fffffffffffffff"), kHighest);
  for (const char* bad : {"9223372036854775808", "-9223372036854775809", "18446744073709551616",
                          "0x8000000000000000", "99999999999999999999999"}) {
    EXPECT_FALSE(parseInteger(bad).has_value()) << bad;
  }
}

TEST(PropertyListNumbers, RefusesWhatIsNoInteger) {
  for (const char* bad : {"", " ", "+", "-", "--1", "+-1", "1.5", "1e3", "12x", "0x", "0xg", "1 2", "1_000",
                          "0b1", "\xD9\xA1"}) {
    EXPECT_FALSE(parseInteger(bad).has_value()) << bad;
  }
}

TEST(PropertyListNumbers, ReadsReals) {
  EXPECT_EQ(parseReal("0.74"), 0.74);
  EXPECT_EQ(parseReal("+1"), 1.0);
  EXPECT_EQ(parseReal(" -1.5e-3 "), -1.5e-3);
  EXPECT_EQ(parseReal(".5"), 0.5);
  EXPECT_EQ(parseReal("5."), 5.0);
  EXPECT_EQ(parseReal("1E+22"), 1e22);
  EXPECT_EQ(parseReal("5e-324"), 5e-324);
}

TEST(PropertyListNumbers, ReadsNotANumberAndInfinity) {
  for (const char* text : {"nan", "NaN", "NAN"}) {
    ASSERT_TRUE(parseReal(text).has_value()) << text;
    EXPECT_TRUE(std::isnan(*parseReal(text)));
  }
  for (const char* text : {"inf", "+inf", "Infinity", "+infinity", "INF"}) {
    EXPECT_EQ(parseReal(text), std::numeric_limits<double>::infinity()) << text;
  }
  EXPECT_EQ(parseReal("-infinity"), -std::numeric_limits<double>::infinity());
}

TEST(PropertyListNumbers, RefusesWhatIsNoReal) {
  for (const char* bad : {"", "-", "--1", "+-1", "0,74", "1.5.2", "1e", "0x1p3", "nan(1)", "infinite", "1 2",
                          "1e999", "-1e999", "1e-999"}) {
    EXPECT_FALSE(parseReal(bad).has_value()) << bad;
  }
}

TEST(PropertyListNumbers, WritesTheShortestText) {
  EXPECT_EQ(formatReal(0.74), "0.74");
  EXPECT_EQ(formatReal(0.1), "0.1");
  EXPECT_EQ(formatReal(1.0), "1");
  EXPECT_EQ(formatReal(static_cast<double>(0.74F)), "0.7400000095367432");
  EXPECT_EQ(formatReal(-0.0), "-0");
  EXPECT_EQ(formatReal(std::nan("")), "nan");
  EXPECT_EQ(formatReal(-std::nan("")), "nan");
  EXPECT_EQ(formatReal(-std::numeric_limits<double>::infinity()), "-inf");
}

class CommaPoint : public std::numpunct<char> {
  char do_decimal_point() const override { return ','; }
};

TEST(PropertyListNumbers, IgnoreTheLocale) {
  const std::locale before = std::locale::global(std::locale(std::locale::classic(), new CommaPoint));
  EXPECT_EQ(formatReal(0.74), "0.74");
  EXPECT_EQ(parseReal("0.74"), 0.74);
  EXPECT_FALSE(parseReal("0,74").has_value());
  std::locale::global(before);
}

RC_GTEST_PROP(PropertyListNumbers, EveryRealReadsBack, (std::uint64_t bits)) {
  const auto value = std::bit_cast<double>(bits);
  const auto back = parseReal(formatReal(value));
  RC_ASSERT(back.has_value());
  RC_ASSERT((std::isnan(value) ? std::isnan(*back) : std::bit_cast<std::uint64_t>(*back) == bits));
}

RC_GTEST_PROP(PropertyListNumbers, EveryIntegerReadsBack, (std::int64_t value)) {
  RC_ASSERT(parseInteger(std::to_string(value)) == value);
}

}  // namespace
}  // namespace veltrix::plist
