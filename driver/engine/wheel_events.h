#pragma once

#include <cstdint>

#include "driver/engine/output.h"

namespace veltrix {

// Writes scrolling as the kernel has it: hi-res events of 120 units for a detent, and beside them whole
// detents for readers that know no others, one whenever 120 units have come together.
class WheelEvents {
 public:
  // No call writes more than this, up or down, left or right; what is beyond is dropped.
  static constexpr std::int32_t kMostUnits = 32767;

  // Up and to the right are positive.
  void write(std::int64_t verticalUnits, std::int64_t horizontalUnits, Output& output) noexcept;

  // Forgets what made no whole detent.
  void rest() noexcept { fVerticalLeft = fHorizontalLeft = 0; }

 private:
  std::int32_t fVerticalLeft = 0;
  std::int32_t fHorizontalLeft = 0;
};

}  // namespace veltrix
