#pragma once

#include <cstdint>

#include "driver/engine/ball_counts.h"

namespace veltrix {

// Keeps a movement to one axis.
//
//   kept axis | what the ball did over about the last millimetre   | then kept
//   ----------+-----------------------------------------------------+----------
//   none      | moved at least as far sideways as up or down        | x
//   none      | moved further up or down                            | y
//   x         | moved more than twice as far (and 0.1 mm) along y   | y
//   y         | moved more than twice as far (and 0.1 mm) along x   | x
//   x, y      | anything else                                       | the same
class AxisLock {
 public:
  // `nativeResolution` is in counts per inch, 1 or more.
  explicit AxisLock(std::uint16_t nativeResolution) noexcept;

  // These counts without those along the other axis, which are dropped.
  BallCounts keep(BallCounts counts) noexcept;

  // Keeps to no axis until the next counts.
  void release() noexcept;

 private:
  enum class Axis : std::uint8_t { kNone, kX, kY };

  double fWindow;  // counts
  double fMargin;
  double fX = 0.0;  // counts over the window, later ones with more weight
  double fY = 0.0;
  Axis fAxis = Axis::kNone;
};

}  // namespace veltrix
