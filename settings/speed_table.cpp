#include "settings/speed_table.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

namespace veltrix {
namespace {

constexpr std::uint32_t kSliderEnd = 100;
constexpr std::int32_t kDetent = 5;
constexpr std::size_t kMiddle = 10;

}  // namespace

std::int32_t speedAtSlider(std::uint32_t position) {
  if (position > kSliderEnd) {
    return kSpeedTable[kMiddle];
  }
  return kSpeedTable[position / static_cast<std::uint32_t>(kDetent)];
}

std::int32_t sliderForSpeed(std::int32_t dotsPerInch) {
  const auto* found = std::find_if(kSpeedTable.begin(), kSpeedTable.end(),
                                   [=](std::int16_t speed) { return speed <= dotsPerInch; });
  if (found == kSpeedTable.end()) {
    return static_cast<std::int32_t>(kMiddle) * kDetent;
  }
  return static_cast<std::int32_t>(std::distance(kSpeedTable.begin(), found)) * kDetent;
}

}  // namespace veltrix
