#include "driver/engine/detent_pace.h"

#include "driver/engine/elapsed.h"

namespace veltrix {

Microseconds DetentPace::turned(Microseconds time, std::int32_t units) noexcept {
  const bool goesOn = fRuns && elapsed(fLastTurn, time) <= fLongest;
  fLastTurn = time;
  if (!goesOn) {
    // When the movement of the first report began is unknown: its units are not measured.
    fRuns = true;
    fDetentBegin = time;
    fUnits = 0;
    fPace = kNever;
    return kNever;
  }
  fUnits += units;
  const Microseconds duration = elapsed(fDetentBegin, time);
  if (fUnits >= kHiResPerDetent) {
    fPace = duration * kHiResPerDetent / fUnits;
    fDetentBegin = time;
    fUnits = 0;
  }
  if (fPace > fLongest || elapsed(fDetentBegin, time) > fLongest)
    fPace = kNever;
  return fPace;
}

}  // namespace veltrix
