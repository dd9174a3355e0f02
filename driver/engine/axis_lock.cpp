#include "driver/engine/axis_lock.h"

#include <algorithm>
#include <cmath>

namespace veltrix {
namespace {

constexpr double kWindowInches = 1.0 / 25.4;
constexpr double kMarginInches = 0.1 / 25.4;
constexpr double kClearly = 2.0;

}  // namespace

AxisLock::AxisLock(std::uint16_t nativeResolution) noexcept
    : fWindow(std::max<double>(nativeResolution, 1.0) * kWindowInches),
      fMargin(std::max<double>(nativeResolution, 1.0) * kMarginInches) {}

BallCounts AxisLock::keep(BallCounts counts) noexcept {
  const double x = counts.x;
  const double y = counts.y;
  // Fades by distance, not by time: a hand that rests within a line goes on along it.
  const double fade = fWindow / (fWindow + std::abs(x) + std::abs(y));
  fX = fX * fade + x;
  fY = fY * fade + y;
  const double alongX = std::abs(fX);
  const double alongY = std::abs(fY);
  if (fAxis == Axis::kNone)
    fAxis = alongX >= alongY ? Axis::kX : Axis::kY;
  else if (fAxis == Axis::kX && alongY > kClearly * alongX + fMargin)
    fAxis = Axis::kY;
  else if (fAxis == Axis::kY && alongX > kClearly * alongY + fMargin)
    fAxis = Axis::kX;
  return fAxis == Axis::kX ? BallCounts{counts.x, 0} : BallCounts{0, counts.y};
}

void AxisLock::release() noexcept {
  fX = fY = 0.0;
  fAxis = Axis::kNone;
}

}  // namespace veltrix
