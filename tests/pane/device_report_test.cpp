#include "pane/device_report.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <initializer_list>

namespace veltrix {
namespace {

using ::testing::ElementsAre;

VeltrixDeviceList listOf(std::initializer_list<VeltrixDeviceEntry> devices) {
  VeltrixDeviceList list{};
  for (const VeltrixDeviceEntry& device : devices) {
    list.device[list.count++] = device;
  }
  return list;
}

VeltrixDeviceEntry device(std::uint16_t productId, std::uint16_t version) {
  VeltrixDeviceEntry entry{};
  entry.vendorID = kFamilyVendorId;
  entry.productID = productId;
  entry.productVers = version;
  return entry;
}

TEST(DeviceReport, SaysWhenThereIsNoDevice) {
  EXPECT_EQ(deviceHelpText(listOf({}), "No device found."), "No device found.");
}

TEST(DeviceReport, NamesKindAndVersion) {
  EXPECT_EQ(deviceHelpText(listOf({device(0x1020, 0x0102)}), ""), "Crest Pointer™ Rev. 1.02\n");
}

TEST(DeviceReport, VersionBytesAreShownAsDecimals) {
  EXPECT_EQ(deviceHelpText(listOf({device(0x1020, 0x010A)}), ""), "Crest Pointer™ Rev. 1.10\n");
  EXPECT_EQ(deviceHelpText(listOf({device(0x1020, 0x0203)}), ""), "Crest Pointer™ Rev. 2.03\n");
  EXPECT_EQ(deviceHelpText(listOf({device(0x1020, 0xFFFF)}), ""), "Crest Pointer™ Rev. 255.255\n");
}

TEST(DeviceReport, TwoOfAKindHaveALineEach) {
  const auto list = listOf({device(0x2041, 0x0107), device(0x2041, 0x0106)});
  EXPECT_EQ(deviceHelpText(list, ""), "Skiffline™ Trackball Rev. 1.07\nSkiffline™ Trackball Rev. 1.06\n");
  EXPECT_THAT(presentKinds(list), ElementsAre(false, true, false, false, false));
}

TEST(DeviceReport, AnUnknownProductHasALineWithoutAName) {
  const auto list = listOf({device(0x7777, 0x0100)});
  EXPECT_EQ(deviceHelpText(list, ""), " Rev. 1.00\n");
  EXPECT_THAT(presentKinds(list), ElementsAre(false, false, false, false, false));
}

TEST(DeviceReport, EveryKindHasItsColumn) {
  EXPECT_THAT(presentKinds(listOf({device(0x8002, 1), device(0x1022, 1)})),
              ElementsAre(false, false, true, false, true));
  EXPECT_THAT(presentKinds(listOf({device(0x1020, 1), device(0x2041, 1), device(0x2048, 1)})),
              ElementsAre(true, true, false, true, false));
}

TEST(DeviceReport, ACountAboveTheRoomReadsAsTheRoom) {
  VeltrixDeviceList list = listOf({device(0x1020, 0x0100)});
  list.count = 17;
  const std::string text = deviceHelpText(list, "");
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 16);
}

TEST(DeviceReport, TheVersionTakesThePlaceOfTheFinalSign) {
  EXPECT_EQ(completedVersionLabel("Version #", "1.2.3"), "Version 1.2.3");
}

TEST(DeviceReport, AnyOtherLabelStaysAsItIs) {
  EXPECT_EQ(completedVersionLabel("Version 1.2.3", "4"), "Version 1.2.3");
  EXPECT_EQ(completedVersionLabel("# Version", "4"), "# Version");
  EXPECT_EQ(completedVersionLabel("", "4"), "");
}

}  // namespace
}  // namespace veltrix
