#pragma once

#include <cstdint>

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
ModifierKeys modifierKeysFromMask(std::uint32_t mask);
std::uint32_t maskFromModifierKeys(const ModifierKeys& keys);

}  // namespace veltrix
