#pragma once

#include <cstdint>

#include "driverlink/record.h"

namespace veltrix {

enum class PlanKind : std::uint8_t {
  kNothing,
  kClick,          // `code` is pressed `presses` times, the last one held; modifier keys around it
  kKey,            // `code` is held; modifier keys around it
  kDragLock,       // `code` is down until the next click
  kScroll,         // steps of the wheel
  kModeWhileHeld,  // of the pointer
  kModeOnOff,
};

enum class PointerMode : std::uint8_t { kScrollWithBall, kSlow, kSingleAxis };

// What a command asks the driver to do, worked out once for each record.
struct ActionPlan {
  PlanKind kind = PlanKind::kNothing;
  PointerMode mode = PointerMode::kSlow;
  std::uint8_t presses = 1;
  bool isReported = false;  // whether its begin and end are told
  bool forHelper = false;
  std::uint16_t command = 0;
  std::uint16_t code = 0;
  std::uint16_t modifiers = 0;
  std::int16_t lines = 0;
};

ActionPlan planOf(const RecordAction& action) noexcept;

// A button that passes through as it came; not reported, as no command stands behind it.
ActionPlan planOfPlainButton(std::uint8_t button) noexcept;

}  // namespace veltrix
