#include "helperlink/system_version.h"

#include <gtest/gtest.h>

#include <limits>
#include <utility>

#include "platform/system_release.h"

namespace veltrix {
namespace {

class SystemVersion : public ::testing::TestWithParam<std::pair<double, std::uint32_t>> {
 protected:
  void TearDown() override { setSystemKitVersionForTesting(fStandard); }

  double fStandard = systemKitVersion();
};

TEST_P(SystemVersion, IsPackedByTheBoundThatTheKitMeets) {
  setSystemKitVersionForTesting(GetParam().first);
  EXPECT_EQ(MacOSXVersion(), GetParam().second);
}

INSTANTIATE_TEST_SUITE_P(Bounds, SystemVersion,
                         ::testing::Values(std::pair(1e9, 0x1090U), std::pair(1246.0, 0x1090U),
                                           std::pair(1245.9, 0x1080U), std::pair(1162.0, 0x1080U),
                                           std::pair(1161.9, 0x1070U), std::pair(1121.0, 0x1070U),
                                           std::pair(1120.9, 0x1060U), std::pair(1038.0, 0x1060U),
                                           std::pair(1037.9, 0x1000U), std::pair(1000.0, 0x1000U),
                                           std::pair(0.0, 0x1000U),
                                           std::pair(std::numeric_limits<double>::quiet_NaN(), 0x1000U)));

TEST(SystemVersionDefault, IsTheNewestKnown) {
  EXPECT_EQ(MacOSXVersion(), 0x1090U);
}

}  // namespace
}  // namespace veltrix
