#include "driver/engine/scroll_inertia.h"

#include <algorithm>
#include <cmath>

#include "driver/engine/elapsed.h"
#include "driver/engine/scroll_amount.h"

namespace veltrix {
namespace {

using std::chrono::milliseconds;

// Often enough for a page that moves smoothly, and no step is shorter.
constexpr Microseconds kTick = milliseconds(8);
constexpr Microseconds kLongestRoll = std::chrono::seconds(10);
// Who is called later than this was not running: the page goes on from where it is, without a jump.
constexpr Microseconds kLatestCall = milliseconds(100);

constexpr std::int32_t kMostTriggerTime = 1000;  // ms
constexpr std::int32_t kMostTimeDecay = 1000;    // percent
constexpr std::int32_t kMostCountStop = 32768;   // lines
constexpr double kPercent = 0.01;
constexpr double kSmallestAmount = 1.0;  // units

double inMicroseconds(Microseconds time) noexcept {
  return static_cast<double>(time.count());
}

// With a detent of a single line every step is a fraction of a line; "below one line" would mean never.
double smallestLines(std::int32_t countStop, std::int32_t lines) noexcept {
  const std::int32_t limited = std::clamp(countStop, 0, kMostCountStop);
  return limited == 1 ? std::min(1.0, lines / 2.0) : limited;
}

}  // namespace

void ScrollInertia::configure(bool enabled, const ScrollParameters& parameters, std::int32_t lines) noexcept {
  fEnabled = enabled;
  fTriggerTime = milliseconds(std::clamp(parameters.triggerTime, 0, kMostTriggerTime));
  fTimeDecay = std::clamp(parameters.timeDecay, 100, kMostTimeDecay) * kPercent;
  fCountDecay = std::clamp(parameters.countDecay, 0, 100) * kPercent;
  fLongestStep = std::clamp<double>(parameters.timeStop, 0.0, 10000.0) * 1000.0;
  fSmallestStep = std::max(smallestLines(parameters.countStop, lines) * kUnitsPerLine, kSmallestAmount);
  fDetentAmount = static_cast<double>(lines) * kUnitsPerLine;
  fPace.setLongest(fTriggerTime);
  stop();
}

void ScrollInertia::turned(Microseconds time, ScrollWay way, std::int32_t units) noexcept {
  if (!fEnabled || fTriggerTime == Microseconds::zero())
    return;
  if (way != fWay)
    stop();
  fWay = way;
  const Microseconds pace = fPace.turned(time, units);
  if (pace == kNever) {
    if (fState == State::kReady)
      fState = State::kIdle;
    return;
  }
  const Microseconds stepTime = std::max(pace, kTick);
  fState = State::kReady;
  fStepTime = inMicroseconds(stepTime);
  // A hand does not keep time: the next turn is missing only when it is twice as late as the last one was.
  fDeadline = after(time, std::min(2 * stepTime, fTriggerTime));
}

void ScrollInertia::stop() noexcept {
  fState = State::kIdle;
  fPace.rest();
}

std::int64_t ScrollInertia::expire(Microseconds now) noexcept {
  if (fState == State::kIdle || now < fDeadline)
    return 0;
  const Microseconds late = elapsed(fDeadline, now);
  if (fState == State::kReady) {
    fRollBegin = fDeadline;
    fStepAmount = fDetentAmount;
    fStepBegin = fFinished = 0.0;
    fGiven = 0;
    fState = beginNextStep() ? State::kRolling : State::kIdle;
  }
  if (late > kLatestCall)
    fRollBegin = after(fRollBegin, late);
  fDeadline = after(now, kTick);
  const double time = inMicroseconds(elapsed(fRollBegin, now));
  while (fState == State::kRolling && time >= fStepBegin + fStepTime) {
    fFinished += fStepAmount;
    fStepBegin += fStepTime;
    if (!beginNextStep())
      fState = State::kIdle;
  }
  const bool rolls = fState == State::kRolling;
  const double amount =
      rolls ? std::floor(fFinished + fStepAmount * (time - fStepBegin) / fStepTime) : std::round(fFinished);
  const std::int64_t given = fGiven;
  fGiven = static_cast<std::int64_t>(amount);
  return fGiven - given;
}

// Turns from a step, or the last detent of the wheel, to the next; false when there is none.
bool ScrollInertia::beginNextStep() noexcept {
  const double time = fStepTime * fTimeDecay;
  const double amount = fStepAmount * fCountDecay;
  if (time > fLongestStep || amount < fSmallestStep || fStepBegin + time > inMicroseconds(kLongestRoll))
    return false;
  fStepTime = time;
  fStepAmount = amount;
  return true;
}

}  // namespace veltrix
