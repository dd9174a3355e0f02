#include "util/hex_number.h"

#include <gtest/gtest.h>

namespace veltrix {
namespace {

TEST(ParseHex, TakesOnlyHexadecimalDigits) {
  std::uint16_t value = 7;
  EXPECT_TRUE(parseHex("a1D0", 4, &value));
  EXPECT_EQ(value, 0xA1D0);
  for (const char* bad : {"", "12345", "0x12", "-1", "+1", "12g", " 1", "1 "}) {
    value = 7;
    EXPECT_FALSE(parseHex(bad, 4, &value)) << bad;
    EXPECT_EQ(value, 7);
  }
}

}  // namespace
}  // namespace veltrix
