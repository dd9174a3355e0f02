#pragma once

#include <array>
#include <cstdint>

// The pointer speeds that the user can choose, and where they lie on a slider of 0 (fastest) to 100
// (slowest) with a detent every 5.
namespace veltrix {

inline constexpr std::array<std::int16_t, 21> kSpeedTable = {5000, 4000, 3000, 2000, 1000, 900, 800,
                                                             700,  600,  500,  400,  360,  330, 300,
                                                             260,  230,  200,  160,  130,  100, 80};

// Dots per inch at a position; a position above 100 gives the middle one, 400.
std::int32_t speedAtSlider(std::uint32_t position);

// The detent of the greatest table value that is not above `dotsPerInch`; 50 when there is none.
std::int32_t sliderForSpeed(std::int32_t dotsPerInch);

}  // namespace veltrix
