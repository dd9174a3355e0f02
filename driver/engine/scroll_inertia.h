#pragma once

#include <cstdint>

#include "driver/engine/detent_pace.h"
#include "driver/engine/engine_types.h"
#include "driverlink/scroll_parameters.h"

namespace veltrix {

// Where a turn scrolls to.
struct ScrollWay {
  bool horizontal = false;
  bool negative = false;  // down, to the left

  friend bool operator==(const ScrollWay& a, const ScrollWay& b) = default;
};

// How a page rolls on after a quick turn: in steps, each later and smaller than the one before, whose amounts
// are spread evenly over their times. docs/inertia.md says what the parameters mean and how they are limited.
//
//   state   | what happens                               | then
//   --------+--------------------------------------------+------------------------------------
//   any     | stop()                                     | idle, and a new run of turns begins
//   any     | turn another way                           | as stop(), then as turn while idle
//   idle    | turn, quick                                | ready
//   idle    | turn, not quick                            | idle
//   ready   | turn, quick                                | ready, waits from now on
//   ready   | turn, not quick                            | idle
//   ready   | the wheel has paused                       | rolling; idle when no step is to come
//   rolling | turn the same way, quick                   | ready
//   rolling | turn the same way, not quick               | rolling
//   rolling | last step is over                          | idle
class ScrollInertia {
 public:
  // `lines` is the amount of a detent, 1 or more. Stops.
  void configure(bool enabled, const ScrollParameters& parameters, std::int32_t lines) noexcept;

  // The wheel was turned by `units` (1 or more; kHiResPerDetent for a detent).
  void turned(Microseconds time, ScrollWay way, std::int32_t units) noexcept;

  void stop() noexcept;

  Microseconds deadline() const noexcept { return fState == State::kIdle ? kNever : fDeadline; }

  // By how many hi-res units to scroll on, 0 or more, the way that way() tells; 0 before the deadline.
  std::int64_t expire(Microseconds now) noexcept;

  ScrollWay way() const noexcept { return fWay; }

 private:
  enum class State : std::uint8_t { kIdle, kReady, kRolling };

  bool beginNextStep() noexcept;

  bool fEnabled = false;
  Microseconds fTriggerTime{};
  double fTimeDecay = 1.0;     // of the time of a step to that of the one before
  double fCountDecay = 1.0;    // of its amount
  double fLongestStep = 0.0;   // µs
  double fSmallestStep = 0.0;  // units
  double fDetentAmount = 0.0;  // units

  State fState = State::kIdle;
  ScrollWay fWay;
  DetentPace fPace;
  Microseconds fDeadline{};

  Microseconds fRollBegin{};
  double fStepBegin = 0.0;   // µs since the roll began
  double fStepTime = 0.0;    // µs
  double fStepAmount = 0.0;  // units
  double fFinished = 0.0;    // units of the steps before
  std::int64_t fGiven = 0;   // units since the roll began
};

}  // namespace veltrix
