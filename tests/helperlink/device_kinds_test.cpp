#include "helperlink/device_kinds.h"

#include <gtest/gtest.h>

#include <string>

namespace veltrix {
namespace {

struct Row {
  std::uint16_t productId;
  std::uint16_t version;
  std::string name;
  int column;
  std::uint32_t tab;
};

class EveryKind : public ::testing::TestWithParam<Row> {};

TEST_P(EveryKind, HasItsNameColumnAndTab) {
  const Row& row = GetParam();
  const DeviceKind* kind = findDeviceKind(row.productId);
  ASSERT_NE(kind, nullptr);
  EXPECT_EQ(kind->productId, row.productId);
  EXPECT_EQ(kind->name, row.name);
  EXPECT_EQ(kind->selectorColumn, row.column);
  EXPECT_EQ(kind, &kDeviceKinds[row.column]);
  EXPECT_EQ(deviceTabFor(row.productId, row.version), row.tab);
}

INSTANTIATE_TEST_SUITE_P(Table, EveryKind,
                         ::testing::Values(Row{0x1020, 0x0100, "Crest Pointer\u2122", 0, 2},
                                           Row{0x2041, 0x0107, "Skiffline\u2122 Trackball", 1, 3},
                                           Row{0x2041, 0x0106, "Skiffline\u2122 Trackball", 1, 4},
                                           Row{0x1022, 0x0100, "Cirra\u2122 Lucent Trackball", 2, 5},
                                           Row{0x2048, 0x0100, "Cirra\u2122 Trackball with Dial Rim", 3, 6},
                                           Row{0x8002, 0x0100, "Aldmoor Cirra\u2122 Roaming Pocket Trackball",
                                               4, 7}));

TEST(DeviceTab, OnlyTheSkifflineDependsOnItsVersion) {
  EXPECT_EQ(deviceTabFor(0x2041, 0x0000), 4U);
  EXPECT_EQ(deviceTabFor(0x2041, 0xFFFF), 3U);
  for (const DeviceKind& kind : kDeviceKinds) {
    EXPECT_EQ(deviceTabFor(kind.productId, 0x0000) == deviceTabFor(kind.productId, 0xFFFF),
              kind.productId != 0x2041);
  }
}

TEST(DeviceTab, ProductOfNoKnownKindHasThePageWithoutDevice) {
  EXPECT_EQ(findDeviceKind(0x1021), nullptr);
  EXPECT_EQ(deviceTabFor(0x1021, 0x0107), kNoDeviceTab);
  EXPECT_EQ(deviceTabFor(0, 0), kNoDeviceTab);
}

}  // namespace
}  // namespace veltrix
