#pragma once

#include <cstdint>

#include "driver/engine/axis_lock.h"
#include "driver/engine/ball_acceleration.h"
#include "driver/engine/engine_types.h"
#include "driverlink/record.h"

namespace veltrix {

struct Movement {
  std::int32_t dx = 0;
  std::int32_t dy = 0;

  friend bool operator==(const Movement& a, const Movement& b) = default;
};

// Turns counts of the sensor into movement of the pointer: axes, resolution, acceleration, slow, single axis.
// What does not make a whole step is kept for the next one, so that no movement is lost or won: at every
// moment the pointer is less than one step from where exact arithmetic would have it.
class PointerMotion {
 public:
  explicit PointerMotion(const DeviceModel& model) noexcept;

  // Takes speed, acceleration and axis flags of the record from now on, and rests. A speed that is not set,
  // or that no record can mean (below 80 dots per inch), is the native resolution.
  void configure(const DriverRecord& record) noexcept;

  // The movement for these counts, none while the ball scrolls; never more than 32767 either way on an axis,
  // however large they are.
  Movement move(Microseconds time, std::int32_t dx, std::int32_t dy, PointerModes modes) noexcept;

  // Forgets the ball's speed, what was left over, and the axis that it kept to.
  void rest() noexcept;

 private:
  std::int32_t whole(std::int64_t parts, std::int64_t& left) const noexcept;

  std::uint16_t fNativeResolution;
  std::uint8_t fAxisFlags = 0;
  // The scale is fDotsPerInch / fCountsPerInch.
  std::int32_t fDotsPerInch = 1;
  std::int32_t fCountsPerInch = 1;
  BallAcceleration fAcceleration;
  AxisLock fAxisLock;
  std::int64_t fLeftX = 0;  // what makes no whole step yet, in parts of a step
  std::int64_t fLeftY = 0;
};

}  // namespace veltrix
