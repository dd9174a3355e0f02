#pragma once

#include <cstdint>
#include <type_traits>

namespace veltrix {

// How a page rolls on after a quick turn of the wheel or ring; any values, as the settings have them. Who
// carries them out limits what makes no sense.
struct ScrollParameters {
  std::int32_t triggerTime;  // ms: steps of the wheel no further apart start it
  std::int32_t timeDecay;    // percent: time to the next step, of the time to the last
  std::int32_t timeStop;     // ms: stops when the next step would take longer
  std::int32_t countDecay;   // percent: amount of the next step, of the amount of the last
  std::int32_t countStop;    // lines: stops when the next step would be smaller

  friend bool operator==(const ScrollParameters& a, const ScrollParameters& b) = default;
};

static_assert(sizeof(ScrollParameters) == 20);
static_assert(std::is_trivially_copyable_v<ScrollParameters>);

}  // namespace veltrix
