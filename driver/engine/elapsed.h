#pragma once

#include <algorithm>
#include <cstdint>

#include "driver/engine/engine_types.h"

namespace veltrix {

// Nothing in the engine looks further than this; longer times count as this long.
inline constexpr Microseconds kLongTime = std::chrono::hours(1);

// The time from `from` to `to`, 0 to kLongTime both included: 0 when `to` is not the later one. Defined for
// all values, where a plain difference could overflow.
constexpr Microseconds elapsed(Microseconds from, Microseconds to) noexcept {
  if (to <= from)
    return Microseconds::zero();
  const auto difference = static_cast<std::uint64_t>(to.count()) - static_cast<std::uint64_t>(from.count());
  const auto limit = static_cast<std::uint64_t>(kLongTime.count());
  return Microseconds(static_cast<std::int64_t>(std::min(difference, limit)));
}

// The time `wait` (0 or more) after `time`; kNever at the most.
constexpr Microseconds after(Microseconds time, Microseconds wait) noexcept {
  return time > kNever - wait ? kNever : time + wait;
}

}  // namespace veltrix
