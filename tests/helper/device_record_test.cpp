#include "helper/device_record.h"

#include <gtest/gtest.h>

#include "tests/support/settings_documents.h"

namespace veltrix {
namespace {

using testing::actionOf;
using testing::arrayOf;
using testing::clickOf;
using testing::dictionaryOf;
using testing::entryOf;

VeltrixDeviceEntry deviceOf(std::uint16_t product, std::uint16_t version = 0x0100) {
  VeltrixDeviceEntry device{};
  device.vendorID = 0xA1D0;
  device.productID = product;
  device.productVers = version;
  return device;
}

plist::Dictionary withButtons(plist::Dictionary entry, const plist::Dictionary& buttons) {
  entry.set("buttons", buttons);
  return entry;
}

TEST(DeviceRecord, ConvertsTheBestEntry) {
  const auto entries = arrayOf({entryOf(0, 0), entryOf(0xA1D0, 0), entryOf(0xA1D0, 0x2041)});
  const DeviceRecord record = makeDeviceRecord(entries, deviceOf(0x2041));
  EXPECT_EQ(record.entryIndex, 2);
  EXPECT_FALSE(record.isGlobal);
  ASSERT_TRUE(record.record);
  EXPECT_EQ(record.record->driverEnabled, 1);
}

TEST(DeviceRecord, HasTheScrollParametersOfTheSameEntry) {
  auto global = entryOf(0, 0);
  global.set("param", dictionaryOf({{"timeStop", 5}}));
  auto best = entryOf(0xA1D0, 0x2041);
  best.set("param", dictionaryOf({{"timeStop", 9}}));
  const auto entries = arrayOf({global, best, entryOf(0xA1D0, 0x1020)});
  EXPECT_EQ(makeDeviceRecord(entries, deviceOf(0x2041)).scroll.timeStop, 9);
  EXPECT_EQ(makeDeviceRecord(entries, deviceOf(0x1020)).scroll.timeStop, 0);
  EXPECT_EQ(makeDeviceRecord(entries, deviceOf(0x3000)).scroll.timeStop, 5);
}

TEST(DeviceRecord, SaysWhetherTheEntryWantsThePointerToJump) {
  auto jumping = entryOf(0xA1D0, 0x2041);
  jumping.set("options", dictionaryOf({{"jump", true}}));
  const auto entries = arrayOf({jumping, entryOf(0xA1D0, 0x1020)});
  const DeviceRecord record = makeDeviceRecord(entries, deviceOf(0x2041));
  EXPECT_TRUE(record.jumps);
  EXPECT_FALSE(makeDeviceRecord(entries, deviceOf(0x1020)).jumps);
  EXPECT_FALSE(makeDeviceRecord(entries, deviceOf(0x3000)).jumps);
  DeviceRecord other = record;
  other.jumps = false;
  EXPECT_FALSE(other == record);
}

TEST(DeviceRecord, LooksAtTheVersion) {
  const auto entries = arrayOf({entryOf(0xA1D0, 0x2041, 0x0107, 0), entryOf(0xA1D0, 0x2041, 0, 0x0106)});
  EXPECT_EQ(makeDeviceRecord(entries, deviceOf(0x2041, 0x0106)).entryIndex, 1);
  EXPECT_EQ(makeDeviceRecord(entries, deviceOf(0x2041, 0x0107)).entryIndex, 0);
}

TEST(DeviceRecord, FallsBackToTheGlobalEntry) {
  const auto entries = arrayOf({entryOf(0xA1D0, 0x2041), entryOf(0, 0)});
  const DeviceRecord record = makeDeviceRecord(entries, deviceOf(0x1020));
  EXPECT_EQ(record.entryIndex, 1);
  EXPECT_TRUE(record.isGlobal);
  EXPECT_TRUE(record.record);
}

TEST(DeviceRecord, ButtonsThatDeferTakeTheGlobalEntrysAction) {
  const auto entries = arrayOf({withButtons(entryOf(0xA1D0, 0x2041), dictionaryOf({{"02", actionOf(200)}})),
                                withButtons(entryOf(0, 0), dictionaryOf({{"02", clickOf(3, 0x0100)}}))});
  const DeviceRecord record = makeDeviceRecord(entries, deviceOf(0x2041));
  ASSERT_TRUE(record.record);
  // The record is packed: its fields are read, not bound to a reference.
  EXPECT_EQ(int{record.record->action[2].command}, 3);
  EXPECT_EQ(int{record.record->action[2].modifiers}, 0x0100);
}

TEST(DeviceRecord, WithoutAFittingEntryThereIsNone) {
  for (const auto& entries : {plist::Array(), arrayOf(), arrayOf({entryOf(0xA1D0, 0x2041)})}) {
    const DeviceRecord record = makeDeviceRecord(entries, deviceOf(0x1020));
    EXPECT_EQ(record.entryIndex, -1);
    EXPECT_FALSE(record.isGlobal);
    EXPECT_FALSE(record.record);
  }
}

TEST(DeviceRecord, EntryOfAnotherLayoutGivesNoRecord) {
  auto entry = entryOf(0xA1D0, 0x2041);
  entry.set("dict version", 2);
  const DeviceRecord record = makeDeviceRecord(arrayOf({entry}), deviceOf(0x2041));
  EXPECT_EQ(record.entryIndex, 0);
  EXPECT_FALSE(record.record);
}

}  // namespace
}  // namespace veltrix
