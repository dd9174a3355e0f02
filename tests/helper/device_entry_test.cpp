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

}  // namespace
}  // namespace veltrix
