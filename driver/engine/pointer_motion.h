#pragma once

#include "driver/engine/engine_types.h"
#include "driverlink/record.h"

namespace veltrix {

struct Movement {
  std::int32_t dx = 0;
  std::int32_t dy = 0;

  friend bool operator==(const Movement& a, const Movement& b) = default;
};

// Turns counts of the sensor into movement of the pointer: axes, resolution, acceleration, slow, single axis.
// What does not make a whole step is kept for the next one, so that no movement is lost or won.
class PointerMotion {
 public:
  explicit PointerMotion(const DeviceModel& model) noexcept;

  // Takes speed, acceleration and axis flags of the record from now on.
  void configure(const DriverRecord& record) noexcept;

  // The movement for these counts; never more than 32767 either way on an axis, however large they are.
  Movement move(Microseconds time, std::int32_t dx, std::int32_t dy, PointerModes modes) noexcept;

  // Forgets the ball's speed, what was left over, and the axis that it kept to.
  void rest() noexcept;

 private:
  // to be filled in
};

}  // namespace veltrix
