#include "helperlink/device_list.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "helperlink/helper_protocol.h"

namespace veltrix {
namespace {

// Two processes that were built apart exchange these bytes, so each field is looked for where it must stand.
TEST(DeviceList, HasItsFieldsAtTheirOffsets) {
  constexpr std::size_t kEntry = 4 + 264;  // the second one
  std::array<unsigned char, sizeof(VeltrixDeviceList)> bytes{};
  const auto put = [&](std::size_t offset, std::uint16_t value) {
    std::memcpy(bytes.data() + offset, &value, sizeof value);
  };
  put(0, 2);
  put(2, 1);
  put(kEntry, 0xA1D0);
  put(kEntry + 2, 0x2041);
  put(kEntry + 4, 0x0107);
  put(kEntry + 6, 3);
  std::memcpy(bytes.data() + kEntry + 8, "maker", 6);
  std::memcpy(bytes.data() + kEntry + 136, "ball", 5);

  VeltrixDeviceList list{};
  std::memcpy(&list, bytes.data(), sizeof list);
  EXPECT_EQ(list.count, 2);
  EXPECT_EQ(list.helperState, kVeltrixHelperStateAccessibility);
  EXPECT_EQ(list.device[1].vendorID, 0xA1D0);
  EXPECT_EQ(list.device[1].productID, 0x2041);
  EXPECT_EQ(list.device[1].productVers, 0x0107);
  EXPECT_EQ(list.device[1].interfaceNum, 3);
  EXPECT_STREQ(list.device[1].vendorName, "maker");
  EXPECT_STREQ(list.device[1].productName, "ball");
  EXPECT_EQ(sizeof list, 4228U);
}

TEST(DeviceList, ReadsACountAboveItsRoomAsItsRoom) {
  VeltrixDeviceList list{};
  EXPECT_EQ(VeltrixDeviceCount(list), 0U);
  list.count = 16;
  EXPECT_EQ(VeltrixDeviceCount(list), 16U);
  list.count = 17;
  EXPECT_EQ(VeltrixDeviceCount(list), 16U);
  list.count = 0xFFFF;
  EXPECT_EQ(VeltrixDeviceCount(list), 16U);
}

TEST(ProtocolCodes, HaveTheirFirstCharacterInTheMostSignificantByte) {
  EXPECT_EQ(kVeltrixEventClass, 0x41564C58U);         // AVLX
  EXPECT_EQ(kGetConnectedDevicesEvent, 0x56584763U);  // VXGc
  EXPECT_EQ(kHelperMessageEvent, 0x5658486DU);        // VXHm
  EXPECT_EQ(kDeviceStateEvent, 0x56584465U);          // VXDe
  EXPECT_EQ(kDeviceListType, 0x56584374U);            // VXCt
  EXPECT_EQ(kDeviceStateType, 0x56584474U);           // VXDt
  EXPECT_EQ(kUnsigned32Type, 0x6D61676EU);            // magn
  EXPECT_EQ(kProcessSerialNumberType, 0x70736E20U);   // psn and a blank
  EXPECT_EQ(kDirectObjectKeyword, 0x2D2D2D2DU);       // ----
  EXPECT_EQ(kPaneShownMessage, 0x56585231U);          // VXR1
  EXPECT_EQ(kPaneLeftMessage, 0x56585230U);           // VXR0
  EXPECT_EQ(kSettingsChangedMessage, 0x56585570U);    // VXUp
}

}  // namespace
}  // namespace veltrix
