#include "driver/engine/wheel_events.h"

#include <algorithm>

#include "driver/engine/engine_types.h"

namespace veltrix {
namespace {

void writeAxis(std::uint16_t hiResCode, std::uint16_t detentCode, std::int64_t units, std::int32_t& left,
               Output& output) noexcept {
  const auto given = static_cast<std::int32_t>(
      std::clamp<std::int64_t>(units, -WheelEvents::kMostUnits, WheelEvents::kMostUnits));
  left += given;
  output.relative(hiResCode, given);
  output.relative(detentCode, left / kHiResPerDetent);
  left %= kHiResPerDetent;
}

}  // namespace

void WheelEvents::write(std::int64_t verticalUnits, std::int64_t horizontalUnits, Output& output) noexcept {
  writeAxis(REL_WHEEL_HI_RES, REL_WHEEL, verticalUnits, fVerticalLeft, output);
  writeAxis(REL_HWHEEL_HI_RES, REL_HWHEEL, horizontalUnits, fHorizontalLeft, output);
}

}  // namespace veltrix
