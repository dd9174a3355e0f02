#pragma once

#include <cstdint>

#include "driver/engine/engine_types.h"

namespace veltrix {

// Lets `burst` things happen at once and `perSecond` in the long run; both 1 or more.
class RateLimit {
 public:
  RateLimit(std::uint32_t burst, std::uint32_t perSecond) noexcept
      : fInterval{std::int64_t{1'000'000} / perSecond}, fCapacity{fInterval * burst} {}

  // Whether one more may happen at `now`, which it then has. Time never goes back.
  bool take(Microseconds now) noexcept {
    // What has been used up is paid back by the time that passes.
    if (now > fSeen) {
      const Microseconds passed = now - fSeen;
      fUsed = passed < fUsed ? fUsed - passed : Microseconds{0};
      fSeen = now;
    }
    if (fUsed + fInterval > fCapacity)
      return false;
    fUsed += fInterval;
    return true;
  }

 private:
  Microseconds fInterval;
  Microseconds fCapacity;
  Microseconds fUsed{0};
  Microseconds fSeen{0};
};

}  // namespace veltrix
