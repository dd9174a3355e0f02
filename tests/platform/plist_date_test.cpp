#include "platform/plist_date.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cmath>
#include <limits>

namespace veltrix::plist {
namespace {

TEST(PlistDate, CountsSecondsFromTheStartOf2001) {
  EXPECT_EQ(parseDate("2001-01-01T00:00:00Z"), Date{0});
  EXPECT_EQ(parseDate("2001-01-02T00:00:01Z"), Date{86401});
  EXPECT_EQ(parseDate("2000-12-31T23:59:59Z"), Date{-1});
  EXPECT_EQ(parseDate("1970-01-01T00:00:00Z"), Date{-978307200});
  EXPECT_EQ(parseDate("2024-02-29T23:59:00Z"), Date{730943940});
  EXPECT_EQ(parseDate("0001-01-01T00:00:00Z"), Date{-63113904000});
}

TEST(PlistDate, RefusesDaysAndTimesThatDoNotExist) {
  for (const char* bad : {"2023-02-29T00:00:00Z", "1900-02-29T00:00:00Z", "2024-13-01T00:00:00Z",
                          "2024-00-01T00:00:00Z", "2024-04-31T00:00:00Z", "2024-01-00T00:00:00Z",
                          "2024-01-01T24:00:00Z", "2024-01-01T00:60:00Z", "2024-01-01T00:00:60Z"}) {
    EXPECT_FALSE(parseDate(bad).has_value()) << bad;
  }
}

TEST(PlistDate, RefusesOtherSpellings) {
  for (const char* bad :
       {"", "2024", "2024-01-01", "2024-01-01T00:00:00", "2024-01-01 00:00:00Z", "2024-01-01T00:00:00z",
        "2024-01-01T00:00:00.5Z", "2024-01-01T00:00:00+01:00", " 2024-01-01T00:00:00Z",
        "2024-01-01T00:00:00Z ", "-024-01-01T00:00:00Z", "12024-01-01T00:00:00Z", "2024-1-01T000:00:00Z"}) {
    EXPECT_FALSE(parseDate(bad).has_value()) << bad;
  }
}

TEST(PlistDate, DropsFractionsTowardThePast) {
  EXPECT_EQ(formatDate(Date{0.999}), "2001-01-01T00:00:00Z");
  EXPECT_EQ(formatDate(Date{-0.001}), "2000-12-31T23:59:59Z");
}

TEST(PlistDate, RefusesYearsWithoutFourDigits) {
  const Date last = *parseDate("9999-12-31T23:59:59Z");
  EXPECT_EQ(formatDate(last), "9999-12-31T23:59:59Z");
  EXPECT_FALSE(formatDate(Date{last.seconds + 1}).has_value());
  const Date first = *parseDate("0000-01-01T00:00:00Z");
  EXPECT_EQ(formatDate(first), "0000-01-01T00:00:00Z");
  EXPECT_FALSE(formatDate(Date{first.seconds - 1}).has_value());
  for (const double odd : {1e300, -1e300, std::nan(""), std::numeric_limits<double>::infinity()}) {
    EXPECT_FALSE(formatDate(Date{odd}).has_value());
  }
}

RC_GTEST_PROP(PlistDate, ReadsWhatItWrites, ()) {
  const auto seconds = *rc::gen::inRange<std::int64_t>(-63145440000, 252455616000);
  const Date date{static_cast<double>(seconds)};
  const auto text = formatDate(date);
  RC_ASSERT(text.has_value());
  RC_ASSERT(parseDate(*text) == date);
}

}  // namespace
}  // namespace veltrix::plist
