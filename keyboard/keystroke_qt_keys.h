#pragma once

#include <cstdint>
#include <optional>

namespace veltrix {

// The evdev code of the key that types or does what a Qt::Key means on a US keyboard; `keypad` prefers the
// key of the keypad. Nothing for a key that such a keyboard does not have. For events without a scan code.
std::optional<std::uint16_t> evdevCodeOfQtKey(int key, bool keypad);

}  // namespace veltrix
