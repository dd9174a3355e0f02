#pragma once

#include <algorithm>
#include <cstdint>
#include <utility>

#include "driverlink/record.h"

namespace veltrix {

// More counts than this in one report are taken as this many. It is beyond what any ball can turn, moves the
// pointer as far as one movement may go at every speed, and leaves products with it room in 64 bits.
inline constexpr std::int32_t kMostCounts = 1 << 27;

struct BallCounts {
  std::int32_t x = 0;  // to the right
  std::int32_t y = 0;  // down

  friend constexpr bool operator==(const BallCounts& a, const BallCounts& b) = default;
};

constexpr std::int32_t limitedCounts(std::int32_t counts) noexcept {
  return std::clamp(counts, -kMostCounts, kMostCounts);
}

// What the sensor counted, as the person sees the ball whose mounting the axis flags of a record describe:
// axes are exchanged first, so that kInvertX and kInvertY turn the directions in which the pointer goes.
constexpr BallCounts mountedCounts(std::uint8_t axisFlags, std::int32_t dx, std::int32_t dy) noexcept {
  BallCounts counts{limitedCounts(dx), limitedCounts(dy)};
  if ((axisFlags & kSwapXY) != 0)
    std::swap(counts.x, counts.y);
  if ((axisFlags & kInvertX) != 0)
    counts.x = -counts.x;
  if ((axisFlags & kInvertY) != 0)
    counts.y = -counts.y;
  return counts;
}

}  // namespace veltrix
