#pragma once

#include <span>
#include <vector>

#include "driverlink/packets.h"
#include "helper/typing/keyboard_model.h"

namespace veltrix {

// The keys of a press in the order in which they go down.
std::vector<std::uint16_t> keysOf(const KeyPress& press);

// Types the presses one after the other. What is held around one of them stays down for the next when that
// one needs it as well; at the end every key is up.
std::vector<KeyStep> stepsOf(std::span<const KeyPress> presses);

}  // namespace veltrix
