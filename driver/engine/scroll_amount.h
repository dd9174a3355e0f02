#pragma once

#include <cstdint>

#include "driver/engine/engine_types.h"

namespace veltrix {

// What an ordinary mouse scrolls for a detent, and so the measure of a line.
inline constexpr std::int32_t kUsualLines = 3;
inline constexpr std::int32_t kUnitsPerLine = kHiResPerDetent / kUsualLines;

}  // namespace veltrix
