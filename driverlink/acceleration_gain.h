#pragma once

namespace veltrix {

// The largest acceleration factor that a driver record carries.
inline constexpr double kLargestAccelerationFactor = 4.0;

// The ball speed, in millimetres of ball surface per second, at which half of the extra gain has set in.
// Slow, exact work stays well below it; a flick across the screen is well above.
inline constexpr double kHalfGainSpeed = 100.0;

// By how much pointer movement is multiplied when the ball turns at `speed` (millimetres per second, 0 or
// more) and the user's acceleration factor is `factor` (0 to 4, both included; values outside are taken as
// the nearer end, a not-a-number as 0).
//
//   gain = 1 + factor * speed^2 / (speed^2 + kHalfGainSpeed^2)
//
// It is 1 for a ball at rest and for factor 0, starts with no slope, so that pixel work feels unaccelerated,
// rises smoothly and never exceeds 1 + factor.
constexpr double accelerationGain(double speed, double factor) noexcept {
  if (!(speed > 0.0) || !(factor > 0.0)) {
    return 1.0;
  }
  const double extra = factor < kLargestAccelerationFactor ? factor : kLargestAccelerationFactor;
  // Written with the quotient so that no finite or infinite speed can give infinity divided by infinity.
  const double slowness = kHalfGainSpeed / speed;
  return 1.0 + extra / (1.0 + slowness * slowness);
}

}  // namespace veltrix
