#pragma once

#include <cstdint>
#include <span>

// The buttons of each model. A device tab is 2 to 7 for the models; any other has no buttons.
namespace veltrix {

inline constexpr std::int32_t kFirstModelTab = 2;
inline constexpr std::int32_t kLastModelTab = 7;

// The numbers of a model's buttons (0 to 3) and chords (8, 9), in the order in which they are shown.
std::span<const std::int32_t> buttonNumbers(std::int32_t deviceTab);

// The place of a button among buttonNumbers, 0 when it has none.
std::int32_t buttonPosition(std::int32_t deviceTab, std::int32_t button);

// The base name of the picture of a model; that of no particular model for a device tab without one.
const char* devicePicture(std::int32_t deviceTab);

}  // namespace veltrix
