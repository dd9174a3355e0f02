#include <algorithm>
#include <array>

#include "driver/engine/engine_types.h"

namespace veltrix {

namespace {

struct ModelRow {
  std::uint16_t productId;
  DeviceModel model;
};

// One row for each kind of the family. Their sensors count alike; a kind with another sensor differs here.
constexpr auto kModels = std::to_array<ModelRow>({
    {0x1020, {.nativeResolution = 400}},
    {0x1022, {.nativeResolution = 400}},
    {0x2041, {.nativeResolution = 400}},
    {0x2048, {.nativeResolution = 400}},
    {0x8002, {.nativeResolution = 400}},
});

}  // namespace

DeviceModel deviceModelOf(std::uint16_t productId) noexcept {
  const auto* row = std::find_if(kModels.begin(), kModels.end(),
                                 [&](const auto& each) { return each.productId == productId; });
  return row != kModels.end() ? row->model : DeviceModel{};
}

}  // namespace veltrix
