#pragma once

#include <algorithm>
#include <cstdint>

#include "driver/engine/engine_types.h"

namespace veltrix {

// Counts the whole detents of a wheel whose detents are worth the same whichever way it turns. A turn back
// takes away what was left over, so that a wheel that rests on an edge counts nothing.
class DetentCounter {
 public:
  // More detents in one report than these are not a person's.
  static constexpr std::int64_t kMostDetents = 8;

  // How many detents this turn completes, 0 to kMostDetents; what is beyond them is lost.
  int turn(std::int32_t wheel) noexcept {
    const std::int64_t sum = std::int64_t{fRest} + wheel;
    fRest = static_cast<std::int32_t>(sum % kHiResPerDetent);
    const std::int64_t detents = sum / kHiResPerDetent;
    return static_cast<int>(std::min(detents < 0 ? -detents : detents, kMostDetents));
  }

  void rest() noexcept { fRest = 0; }

 private:
  std::int32_t fRest = 0;
};

}  // namespace veltrix
