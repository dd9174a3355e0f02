#pragma once

#include "driver/engine/engine_types.h"
#include "driver/engine/output.h"
#include "driverlink/record.h"
#include "driverlink/scroll_parameters.h"

namespace veltrix {

// Everything that scrolls: the wheel or ring with its amount, direction and inertia; scrolling commands; the
// ball. Each call adds its events, hi-res ones and the derived whole detents, to the open group of the output
// and leaves the sync to the caller.
class WheelScroll {
 public:
  explicit WheelScroll(const DeviceModel& model) noexcept;

  // Takes amount and direction (slot kWheelSlot, invertWheel, axisFlags) and inertia from now on; ends what
  // rolls on.
  void configure(const DriverRecord& record, const ScrollParameters& parameters) noexcept;

  // The wheel was turned by so much (hi-res units, as in InputFrame). For slots that hold a scroll command
  // (20 to 23).
  void turn(Microseconds time, std::int32_t wheel, std::int32_t hwheel, Output& output) noexcept;

  // One step of a scroll command of a button: `command` is 20 to 23, `lines` its amount (its absolute value
  // counts).
  void step(std::uint16_t command, std::int16_t lines, Output& output) noexcept;

  // The ball turned by so many counts while it scrolls.
  void roll(std::int32_t dx, std::int32_t dy, Output& output) noexcept;

  // Ends what rolls on; to be called for each button and key.
  void stop() noexcept;

  // Forgets what was left over as well.
  void rest() noexcept;

  Microseconds deadline() const noexcept;  // of the next expire(); kNever when nothing rolls on
  void expire(Microseconds now, Output& output) noexcept;

 private:
  // to be filled in
};

}  // namespace veltrix
