#include "driver/engine/ball_acceleration.h"

#include <algorithm>
#include <cmath>

#include "driver/engine/elapsed.h"
#include "driverlink/acceleration_gain.h"

namespace veltrix {
namespace {

constexpr double kMillimetresPerInch = 25.4;

// Long against the reports of the slowest mouse, so that single counts do not shake the gain; short against
// what a hand notices.
constexpr double kSmoothing = 0.024;  // s

// A report tells what happened since the last one. After a longer time the ball lay still first: the slowest
// reports come every 8 ms, and nobody can tell how much of a longer pause the movement took.
constexpr double kLongestReport = 0.010;  // s

double seconds(Microseconds time) noexcept {
  return static_cast<double>(time.count()) * 1e-6;
}

}  // namespace

BallAcceleration::BallAcceleration(std::uint16_t nativeResolution) noexcept
    : fMillimetresPerCount(kMillimetresPerInch / std::max<double>(nativeResolution, 1.0)) {}

double BallAcceleration::gainAt(Speed speed) const noexcept {
  return accelerationGain(std::sqrt(speed.x * speed.x + speed.y * speed.y), fFactor);
}

// Within a report the ball is taken to turn evenly, by `input` per second; the smoothed speed s then follows
// ds/dt = (input - s) / kSmoothing, which is solved here for the middle and the end of the report. The
// exponential function is taken as a quotient of polynomials, (12 - 6x + x^2) / (12 + 6x + x^2): over a
// report it is exact to a millionth, and a report of no duration, a push, is no case of its own.
double BallAcceleration::gain(Microseconds time, BallCounts counts) noexcept {
  if (!(fFactor > 0.0))
    return 1.0;
  const double pause = seconds(fHasTime ? elapsed(fTime, time) : kLongTime);
  const double duration = std::min(pause, kLongestReport);
  const double still = pause > duration ? std::exp((duration - pause) / kSmoothing) : 1.0;
  const double x = duration / (2.0 * kSmoothing);
  const double quotient = 1.0 / (12.0 + x * (6.0 + x));
  const double toMiddle = (12.0 + x * (x - 6.0)) * quotient;
  const double push = fMillimetresPerCount * 6.0 / kSmoothing * quotient;

  const Speed start{fSpeed.x * still, fSpeed.y * still};
  const Speed middle{start.x * toMiddle + counts.x * push, start.y * toMiddle + counts.y * push};
  fSpeed = {middle.x * toMiddle + counts.x * push, middle.y * toMiddle + counts.y * push};
  fTime = time;
  fHasTime = true;
  return gainAt(middle);
}

void BallAcceleration::rest() noexcept {
  fSpeed = {};
  fHasTime = false;
}

}  // namespace veltrix
