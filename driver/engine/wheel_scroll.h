#pragma once

#include <cstdint>

#include "driver/engine/ball_counts.h"
#include "driver/engine/engine_types.h"
#include "driver/engine/output.h"
#include "driver/engine/scroll_inertia.h"
#include "driver/engine/wheel_events.h"
#include "driverlink/record.h"
#include "driverlink/scroll_parameters.h"

namespace veltrix {

// Everything that scrolls: the wheel or ring with its amount, direction and inertia; scrolling commands; the
// ball. Each call adds its events, hi-res ones and the derived whole detents, to the open group of the output
// and leaves the sync to the caller. A line is 40 hi-res units, so that 3 lines are a detent of an ordinary
// mouse; an amount of 0 lines counts as 1, and no call scrolls further than 32767 units.
class WheelScroll {
 public:
  explicit WheelScroll(const DeviceModel& model) noexcept;

  // Takes amount and direction (slot kWheelSlot, invertWheel, axisFlags) and inertia from now on; ends what
  // rolls on.
  void configure(const DriverRecord& record, const ScrollParameters& parameters) noexcept;

  // The wheel was turned by so much (hi-res units, as in InputFrame). For slots that hold a scroll command
  // (20 to 23); any other counts as 20 with 3 lines for a detent, an ordinary mouse.
  void turn(Microseconds time, std::int32_t wheel, std::int32_t hwheel, Output& output) noexcept;

  // One step of a scroll command of a button: `command` is 20 to 23, `lines` its amount (its absolute value
  // counts).
  void step(std::uint16_t command, std::int16_t lines, Output& output) noexcept;

  // The ball turned by so many counts while it scrolls: for 3 mm of its surface as far as the wheel for a
  // detent.
  void roll(std::int32_t dx, std::int32_t dy, Output& output) noexcept;

  // Ends what rolls on; to be called for each button and key.
  void stop() noexcept;

  // Forgets what was left over as well.
  void rest() noexcept;

  Microseconds deadline() const noexcept;  // of the next expire(); kNever when nothing rolls on
  void expire(Microseconds now, Output& output) noexcept;

 private:
  struct Sums {
    std::int64_t vertical = 0;
    std::int64_t horizontal = 0;
  };

  void noteTurn(Microseconds time, Sums units) noexcept;
  void scroll(Sums parts, std::int64_t partsOfUnit, Sums& left, Output& output) noexcept;

  std::uint16_t fNativeResolution;
  std::uint8_t fAxisFlags = 0;
  std::uint16_t fCommand;   // 20 to 23
  std::int32_t fLines;      // for a detent of the wheel, 1 to 32768
  std::int32_t fSense = 1;  // -1 when everything scrolls the other way
  Sums fWheelLeft;          // what makes no unit yet
  Sums fBallLeft;
  WheelEvents fEvents;
  ScrollInertia fInertia;
};

}  // namespace veltrix
