#pragma once

#include <cstdint>

namespace veltrix {

// The commands that scroll; on the wheel the first means the way that it is turned.
inline constexpr std::uint16_t kScrollUp = 20;
inline constexpr std::uint16_t kScrollDown = 21;
inline constexpr std::uint16_t kScrollLeft = 22;
inline constexpr std::uint16_t kScrollRight = 23;

constexpr bool isScroll(std::uint16_t command) noexcept {
  return command >= kScrollUp && command <= kScrollRight;
}

}  // namespace veltrix
