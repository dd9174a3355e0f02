#include "helper/device_entry.h"

#include <gtest/gtest.h>

#include <string>

namespace veltrix {
namespace {

TEST(DeviceEntryText, EndsByANulAndFillsTheField) {
  VeltrixDeviceEntry entry;
  std::fill(std::begin(entry.productName), std::end(entry.productName), 'x');
  setEntryText(entry.productName, "Trackball");
  EXPECT_EQ(entryText(entry.productName), "Trackball");
  EXPECT_EQ(entry.productName[127], '\0');
}

TEST(DeviceEntryText, IsCutAtAWholeCharacter) {
  VeltrixDeviceEntry entry{};
  setEntryText(entry.productName, std::string(127, 'a') + "b");
  EXPECT_EQ(entryText(entry.productName), std::string(127, 'a'));
  setEntryText(entry.productName, std::string(126, 'a') + "\xC3\xA4");
  EXPECT_EQ(entryText(entry.productName), std::string(126, 'a'));
  setEntryText(entry.productName, std::string(125, 'a') + "\xC3\xA4");
  EXPECT_EQ(entryText(entry.productName), std::string(125, 'a') + "\xC3\xA4");
}

TEST(DeviceEntryText, WithoutNulEndsWithTheField) {
  VeltrixDeviceEntry entry;
  std::fill(std::begin(entry.vendorName), std::end(entry.vendorName), 'x');
  EXPECT_EQ(entryText(entry.vendorName), std::string(128, 'x'));
}

TEST(BusText, ReplacesEveryBadByte) {
  EXPECT_EQ(busText("Tr\xC3\xA4ger"), "Tr\xC3\xA4ger");
  EXPECT_EQ(busText("a\xFF\xC3"), "a\xEF\xBF\xBD\xEF\xBF\xBD");
  EXPECT_EQ(busText(""), "");
}

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

TEST(ProductVersion, TurnsEachBcdByteIntoBinary) {
  EXPECT_EQ(productVersionFromBcd(0x0107), 0x0107);
  EXPECT_EQ(productVersionFromBcd(0x0110), 0x010A);
  EXPECT_EQ(productVersionFromBcd(0x1299), 0x0C63);
  EXPECT_EQ(productVersionFromBcd(0x0000), 0x0000);
}

}  // namespace
}  // namespace veltrix
