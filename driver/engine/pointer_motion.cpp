#include "driver/engine/pointer_motion.h"

#include <algorithm>

namespace veltrix {
namespace {

constexpr std::int32_t kMostMovement = 32767;
constexpr std::int32_t kDotsPerInchOfSpeed = 20;
constexpr std::uint8_t kLeastSpeed = 4;  // the slowest that can be set; less is a number that wrapped round
constexpr double kAccelerationUnit = 0.01;

// Movement is counted exactly, in parts of a step: a step divided by the sensor's resolution, by the quarters
// of the slow pointer and by the finest difference of a gain.
constexpr std::int64_t kQuarters = 4;
constexpr std::int64_t kGainParts = 1 << 16;

}  // namespace

PointerMotion::PointerMotion(const DeviceModel& model) noexcept
    : fNativeResolution(std::max<std::uint16_t>(model.nativeResolution, 1)),
      fAcceleration(fNativeResolution),
      fAxisLock(fNativeResolution) {}

void PointerMotion::configure(const DriverRecord& record) noexcept {
  const bool hasSpeed = record.speed >= kLeastSpeed && record.speed != kRecordNotSet;
  fDotsPerInch = hasSpeed ? record.speed * kDotsPerInchOfSpeed : 1;
  fCountsPerInch = hasSpeed ? fNativeResolution : 1;
  fAcceleration.setFactor(record.acceleration == kRecordNotSet ? 0.0
                                                               : record.acceleration * kAccelerationUnit);
  fAxisFlags = record.axisFlags;
  rest();
}

Movement PointerMotion::move(Microseconds time, std::int32_t dx, std::int32_t dy,
                             PointerModes modes) noexcept {
  if (modes.scrollWithBall || (dx == 0 && dy == 0))
    return {};
  BallCounts counts = mountedCounts(fAxisFlags, dx, dy);
  const auto gain =
      static_cast<std::int64_t>(fAcceleration.gain(time, counts) * static_cast<double>(kGainParts));
  if (modes.singleAxis)
    counts = fAxisLock.keep(counts);
  else
    fAxisLock.release();
  const std::int64_t parts = gain * fDotsPerInch * (modes.slow ? 1 : kQuarters);
  return {whole(counts.x * parts, fLeftX), whole(counts.y * parts, fLeftY)};
}

// The whole steps in `parts` and what was left before. Rounds towards zero on either side, so that a ball
// that trembles on the spot does not make the pointer tremble.
std::int32_t PointerMotion::whole(std::int64_t parts, std::int64_t& left) const noexcept {
  const std::int64_t step = fCountsPerInch * kQuarters * kGainParts;
  const std::int64_t sum = left + parts;
  left = sum % step;
  return static_cast<std::int32_t>(std::clamp<std::int64_t>(sum / step, -kMostMovement, kMostMovement));
}

void PointerMotion::rest() noexcept {
  fAcceleration.rest();
  fAxisLock.release();
  fLeftX = fLeftY = 0;
}

}  // namespace veltrix
