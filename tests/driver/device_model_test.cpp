#include <gtest/gtest.h>

#include "driver/engine/engine_types.h"

namespace veltrix {
namespace {

TEST(DeviceModel, EveryProductHasAResolution) {
  for (int product = 0; product <= 0xFFFF; ++product)
    ASSERT_GE(deviceModelOf(static_cast<std::uint16_t>(product)).nativeResolution, 1) << product;
}

TEST(DeviceModel, UnknownProductIsTheUsualOne) {
  EXPECT_EQ(deviceModelOf(0).nativeResolution, DeviceModel{}.nativeResolution);
}

}  // namespace
}  // namespace veltrix
