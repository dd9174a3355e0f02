#pragma once

#include <linux/input.h>

#include <array>
#include <cstdint>

#include "driver/engine/engine_types.h"

namespace veltrix {

struct ModifierKey {
  std::uint16_t code;
  std::uint8_t held;  // a kHeld... bit
};

// The only keys of which the driver hears.
inline constexpr std::array<ModifierKey, 9> kModifierKeys = {{
    {KEY_LEFTMETA, kHeldCommand},
    {KEY_RIGHTMETA, kHeldCommand},
    {KEY_LEFTSHIFT, kHeldShift},
    {KEY_RIGHTSHIFT, kHeldShift},
    {KEY_CAPSLOCK, kHeldCapsLock},
    {KEY_LEFTALT, kHeldOption},
    {KEY_RIGHTALT, kHeldOption},
    {KEY_LEFTCTRL, kHeldControl},
    {KEY_RIGHTCTRL, kHeldControl},
}};

// Which of them are down on one keyboard. All count as up at first.
class HeldModifiers {
 public:
  void add(const input_event& event) noexcept;
  // The kHeld... bits: a modifier is held while one of its keys is.
  std::uint8_t held() const noexcept;

 private:
  std::uint16_t fDown = 0;  // by index in kModifierKeys
};

}  // namespace veltrix
