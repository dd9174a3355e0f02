#include "driverlink/device_family.h"

#include <gtest/gtest.h>

#include "helperlink/device_kinds.h"

namespace veltrix {
namespace {

TEST(ProductVersion, TurnsEachBcdByteIntoBinary) {
  EXPECT_EQ(productVersionFromBcd(0x0107), 0x0107);
  EXPECT_EQ(productVersionFromBcd(0x0110), 0x010A);
  EXPECT_EQ(productVersionFromBcd(0x1299), 0x0C63);
  EXPECT_EQ(productVersionFromBcd(0x0000), 0x0000);
}

TEST(DeviceFamily, IsTheSameForDriverAndPane) {
  EXPECT_EQ(kTrackballVendor, kFamilyVendorId);
}

}  // namespace
}  // namespace veltrix
