#include "driver/engine/wheel_scroll.h"

#include <algorithm>
#include <cstdlib>

#include "driver/engine/scroll_amount.h"
#include "driver/engine/scroll_commands.h"

namespace veltrix {
namespace {

// The ball scrolls a detent's amount for 3 mm. An inch is 25.4 mm; both are in tenths of a millimetre.
constexpr std::int64_t kInchOfBall = 254;
constexpr std::int64_t kDetentOfBall = 30;

// The amount that a record or a button asks for; direction is a matter of the command alone.
std::int32_t linesOf(std::int16_t amount) noexcept {
  const std::int32_t lines = amount;
  return lines == 0 ? 1 : std::abs(lines);
}

}  // namespace

WheelScroll::WheelScroll(const DeviceModel& model) noexcept
    : fNativeResolution(std::max<std::uint16_t>(model.nativeResolution, 1)),
      fCommand(kScrollUp),
      fLines(kUsualLines) {}

void WheelScroll::configure(const DriverRecord& record, const ScrollParameters& parameters) noexcept {
  const RecordAction& wheel = record.action[kWheelSlot];
  const bool scrolls = isScroll(wheel.command);
  fCommand = scrolls ? wheel.command : kScrollUp;
  fLines = scrolls ? linesOf(static_cast<std::int16_t>(wheel.argument)) : kUsualLines;
  const bool turned = (record.axisFlags & kInvertZ) != 0;
  fSense = turned != (record.invertWheel != 0) ? -1 : 1;
  fAxisFlags = record.axisFlags;
  fInertia.configure(record.inertialScroll != 0, parameters, fLines);
  rest();
}

void WheelScroll::turn(Microseconds time, std::int32_t wheel, std::int32_t hwheel, Output& output) noexcept {
  const std::int64_t up = std::int64_t{limitedCounts(wheel)} * fSense;
  Sums units{0, std::int64_t{limitedCounts(hwheel)} * fSense};
  switch (fCommand) {
    case kScrollDown:
      units.vertical -= up;
      break;
    case kScrollLeft:
      units.horizontal -= up;
      break;
    case kScrollRight:
      units.horizontal += up;
      break;
    default:
      units.vertical += up;
      break;
  }
  noteTurn(time, units);
  scroll({units.vertical * fLines, units.horizontal * fLines}, kUsualLines, fWheelLeft, output);
}

// What rolls on goes along one axis; a wheel that is turned is seldom tilted quite straight, so the larger
// one.
void WheelScroll::noteTurn(Microseconds time, Sums units) noexcept {
  const bool horizontal = std::abs(units.horizontal) > std::abs(units.vertical);
  const std::int64_t along = horizontal ? units.horizontal : units.vertical;
  const auto length = static_cast<std::int32_t>(std::min<std::int64_t>(std::abs(along), kMostCounts));
  if (length != 0)
    fInertia.turned(time, {horizontal, along < 0}, length);
}

void WheelScroll::step(std::uint16_t command, std::int16_t lines, Output& output) noexcept {
  const std::int64_t units = std::int64_t{linesOf(lines)} * kUnitsPerLine;
  switch (command) {
    case kScrollUp:
      fEvents.write(units, 0, output);
      break;
    case kScrollDown:
      fEvents.write(-units, 0, output);
      break;
    case kScrollLeft:
      fEvents.write(0, -units, output);
      break;
    case kScrollRight:
      fEvents.write(0, units, output);
      break;
    default:
      break;
  }
}

void WheelScroll::roll(std::int32_t dx, std::int32_t dy, Output& output) noexcept {
  const BallCounts counts = mountedCounts(fAxisFlags, dx, dy);
  const std::int64_t partsOfCount = kInchOfBall * fLines * kUnitsPerLine * fSense;
  scroll({-counts.y * partsOfCount, counts.x * partsOfCount}, kDetentOfBall * fNativeResolution, fBallLeft,
         output);
}

// Scrolls by the whole units in `parts` and what was left before, and leaves the rest for the next time.
void WheelScroll::scroll(Sums parts, std::int64_t partsOfUnit, Sums& left, Output& output) noexcept {
  left.vertical += parts.vertical;
  left.horizontal += parts.horizontal;
  fEvents.write(left.vertical / partsOfUnit, left.horizontal / partsOfUnit, output);
  left.vertical %= partsOfUnit;
  left.horizontal %= partsOfUnit;
}

void WheelScroll::stop() noexcept {
  fInertia.stop();
}

void WheelScroll::rest() noexcept {
  stop();
  fWheelLeft = fBallLeft = {};
  fEvents.rest();
}

Microseconds WheelScroll::deadline() const noexcept {
  return fInertia.deadline();
}

void WheelScroll::expire(Microseconds now, Output& output) noexcept {
  const std::int64_t units = fInertia.expire(now);
  const ScrollWay way = fInertia.way();
  const std::int64_t signedUnits = way.negative ? -units : units;
  fEvents.write(way.horizontal ? 0 : signedUnits, way.horizontal ? signedUnits : 0, output);
}

}  // namespace veltrix
