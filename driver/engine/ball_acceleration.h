#pragma once

#include <cstdint>

#include "driver/engine/ball_counts.h"
#include "driver/engine/engine_types.h"

namespace veltrix {

// The speed of the ball over the last moments, and the gain that it gives.
//
// The speed is smoothed over time, not over reports, and as a vector: a fast sensor tells a diagonal as
// counts to the right and counts down in turns, whose lengths must not add up. The gain is that of the middle
// of the time that a report covers, so that few long reports and many short ones give the same path.
class BallAcceleration {
 public:
  // `nativeResolution` is in counts per inch, 1 or more.
  explicit BallAcceleration(std::uint16_t nativeResolution) noexcept;

  // 0 for none.
  void setFactor(double factor) noexcept { fFactor = factor; }

  // By how much these counts, not both 0, are multiplied; 1 to 1 + factor.
  double gain(Microseconds time, BallCounts counts) noexcept;

  void rest() noexcept;

 private:
  struct Speed {
    double x = 0.0;  // mm/s
    double y = 0.0;
  };

  double gainAt(Speed speed) const noexcept;

  double fMillimetresPerCount;
  double fFactor = 0.0;
  Speed fSpeed;
  Microseconds fTime{};  // of the last report
  bool fHasTime = false;
};

}  // namespace veltrix
