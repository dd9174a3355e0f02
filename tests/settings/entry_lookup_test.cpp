#include "settings/entry_lookup.h"

#include <gtest/gtest.h>

#include <initializer_list>

#include "tests/support/settings_documents.h"

namespace veltrix {
namespace {

using testing::arrayOf;
using testing::entryOf;

struct Device {
  std::uint16_t product;
  std::uint16_t version;
};

VeltrixDeviceList listOf(std::initializer_list<Device> devices) {
  VeltrixDeviceList list{};
  for (const Device& device : devices) {
    list.device[list.count].productID = device.product;
    list.device[list.count].productVers = device.version;
    ++list.count;
  }
  return list;
}

void expectFound(const plist::Array& entries, const VeltrixDeviceList& list, std::uint16_t preferred,
                 std::int32_t index, std::uint32_t tab) {
  const auto found = findEntryForDevices(entries, &list, preferred);
  EXPECT_TRUE(found.found);
  EXPECT_EQ(found.index, index);
  EXPECT_EQ(found.deviceTab, tab);
}

void expectNothing(const plist::Array& entries, const VeltrixDeviceList* list, std::uint16_t preferred = 0) {
  const auto found = findEntryForDevices(entries, list, preferred);
  EXPECT_FALSE(found.found);
  EXPECT_EQ(found.index, 0);
  EXPECT_EQ(found.deviceTab, 1U);
}

TEST(FindEntry, FindsNothingWithoutADevice) {
  const auto none = listOf({});
  expectNothing(arrayOf({entryOf(1, 0x1020)}), &none);
  expectNothing(arrayOf({entryOf(1, 0x1020)}), nullptr);
}

TEST(FindEntry, FindsNothingWithoutAnEntryOfTheProduct) {
  const auto list = listOf({{0x1020, 0x0100}});
  expectNothing(arrayOf({entryOf(1, 0x1022), "text"}), &list);
  expectNothing(plist::Array(), &list);
}

TEST(FindEntry, TakesTheFirstEntryThatFitsAndTheTabOfTheKind) {
  const auto entries = arrayOf({entryOf(1, 0x1020), entryOf(1, 0x2048), entryOf(2, 0x2048)});
  expectFound(entries, listOf({{0x2048, 0x0100}}), 0, 1, 6);
  expectFound(entries, listOf({{0x1020, 0x0100}}), 0, 0, 2);
}

TEST(FindEntry, TellsTheVersionsOfAProductApart) {
  const auto entries = arrayOf({entryOf(1, 0x2041, 0x0107, 0), entryOf(1, 0x2041, 0x0100, 0x0106)});
  expectFound(entries, listOf({{0x2041, 0x0107}}), 0, 0, 3);
  expectFound(entries, listOf({{0x2041, 0x0106}}), 0, 1, 4);
  const auto older = listOf({{0x2041, 0x00FF}});
  expectNothing(entries, &older);
}

TEST(FindEntry, NeverChoosesAnEntryForAnyProduct) {
  const auto list = listOf({{0x1020, 0x0100}});
  expectNothing(arrayOf({entryOf(0, 0), entryOf(0xA1D0, 0x10000)}), &list);
  const auto unnamed = listOf({{0, 0x0100}});
  expectNothing(arrayOf({entryOf(0, 0)}), &unnamed);
}

TEST(FindEntry, DoesNotAskForTheVendor) {
  expectFound(arrayOf({entryOf(0x1234, 0x1022)}), listOf({{0x1022, 0}}), 0, 0, 5);
}

TEST(FindEntry, AProductOfNoKnownKindHasNoTab) {
  expectFound(arrayOf({entryOf(1, 0x9999)}), listOf({{0x9999, 0x0100}}), 0, 0, 1);
}

TEST(FindEntry, ReadsTheLowSixteenBits) {
  expectFound(arrayOf({entryOf(1, 0x51020, 0x10000, 0x20101)}), listOf({{0x1020, 0x0101}}), 0, 0, 2);
}

TEST(FindEntry, GoesByTheOrderOfTheDevices) {
  const auto entries = arrayOf({entryOf(1, 0x1020), entryOf(1, 0x2048)});
  expectFound(entries, listOf({{0x9999, 0}, {0x2048, 0}, {0x1020, 0}}), 0, 1, 6);
}

TEST(FindEntry, PrefersAProductWhenTwoDevicesAreConnected) {
  const auto entries = arrayOf({entryOf(1, 0x1020), entryOf(1, 0x2048)});
  expectFound(entries, listOf({{0x1020, 0}, {0x2048, 0}}), 0x2048, 1, 6);
}

TEST(FindEntry, DoesNotPreferAProductThatNoDeviceHas) {
  const auto entries = arrayOf({entryOf(1, 0x1020), entryOf(1, 0x2048)});
  expectFound(entries, listOf({{0x2048, 0}, {0x1020, 0}}), 0x1022, 1, 6);
}

TEST(FindEntry, DoesNotPreferAProductForASingleDevice) {
  expectFound(arrayOf({entryOf(1, 0x1020), entryOf(1, 0x2048)}), listOf({{0x1020, 0}}), 0x2048, 0, 2);
}

TEST(FindEntry, ConsidersOnlyThePreferredProductEvenWhenItHasNoEntry) {
  const auto list = listOf({{0x1020, 0}, {0x2048, 0}});
  expectNothing(arrayOf({entryOf(1, 0x1020)}), &list, 0x2048);
}

TEST(FindEntry, ReadsAtMostSixteenDevices) {
  auto list = listOf({});
  list.count = 60000;
  list.device[15].productID = 0x1020;
  expectFound(arrayOf({entryOf(1, 0x1020)}), list, 0, 0, 2);
}

TEST(FindEntryOfSameIds, ComparesTheLowSixteenBitsOfAllFour) {
  const auto twin = entryOf(0xA1D0, 0x2041, 0x0100, 0x0107);
  const auto entries =
      arrayOf({"text", entryOf(1, 0x2041, 0x0100, 0x0107), entryOf(0xA1D0, 0x2041, 0x0100, 0x0106), twin});
  const auto wanted = entryOf(0xA1D0, 0x2041, 0x0100, 0x10107);
  EXPECT_TRUE(findEntryOfSameIds(entries, wanted).sameAs(twin));
  EXPECT_TRUE(findEntryOfSameIds(entries, entryOf(0xA1D0, 0x2041, 0x0101, 0x0107)).isNull());
  EXPECT_TRUE(findEntryOfSameIds(plist::Array(), wanted).isNull());
}

TEST(FindEntryOfSameIds, TakesTheFirstOfTwo) {
  const auto first = entryOf(1, 2);
  EXPECT_TRUE(findEntryOfSameIds(arrayOf({first, entryOf(1, 2)}), entryOf(1, 2)).sameAs(first));
}

}  // namespace
}  // namespace veltrix
