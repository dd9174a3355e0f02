#pragma once

#include <cstdint>

#include "settings/modifier_mask.h"

namespace veltrix {

// The four keys of a modifier mask that a person can choose.
struct ModifierKeys {
  bool command = false;
  bool shift = false;
  bool option = false;
  bool control = false;
  friend bool operator==(const ModifierKeys&, const ModifierKeys&) = default;
};

// Bits of other keys, Caps Lock among them, are left out.
constexpr ModifierKeys modifierKeysFromMask(std::uint32_t mask) {
  return {(mask & kCommandModifier) != 0, (mask & kShiftModifier) != 0, (mask & kOptionModifier) != 0,
          (mask & kControlModifier) != 0};
}

constexpr std::uint32_t maskFromModifierKeys(const ModifierKeys& keys) {
  return (keys.command ? std::uint32_t{kCommandModifier} : 0U) |
         (keys.shift ? std::uint32_t{kShiftModifier} : 0U) |
         (keys.option ? std::uint32_t{kOptionModifier} : 0U) |
         (keys.control ? std::uint32_t{kControlModifier} : 0U);
}

}  // namespace veltrix
