#pragma once

#include <cstdint>

#include "driver/engine/engine_types.h"

namespace veltrix {

// How fast a wheel is being turned one way: the time that it takes for a detent. Wheels that report whole
// detents and wheels that report small parts of them are measured alike.
//
//   turn comes                                  | pace
//   --------------------------------------------+----------------------------------------------
//   first, or later than `longest` after the    | kNever: a new run begins
//   one before                                  |
//   within a run, detent not yet complete       | as before; kNever once it takes over `longest`
//   within a run, completes a detent or more    | the time for each of them; kNever over `longest`
class DetentPace {
 public:
  // 0 or more; nothing is quick for 0 but turns at one time.
  void setLongest(Microseconds longest) noexcept { fLongest = longest; }

  // Counts a turn by `units`, 1 or more, and gives the pace, kNever when it is not quick.
  Microseconds turned(Microseconds time, std::int32_t units) noexcept;

  // Ends the run.
  void rest() noexcept { fRuns = false; }

 private:
  Microseconds fLongest{};
  Microseconds fLastTurn{};
  Microseconds fDetentBegin{};
  Microseconds fPace = kNever;
  std::int64_t fUnits = 0;  // of the detent that has begun
  bool fRuns = false;
};

}  // namespace veltrix
