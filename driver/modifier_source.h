#pragma once

#include <cstdint>

namespace veltrix {

class ModifierListener {
 public:
  virtual ~ModifierListener() = default;
  // `held` are the kHeld... bits of all keyboards together.
  virtual void modifiersChanged(std::uint8_t held) noexcept = 0;
};

// Knows which modifier keys are held.
class ModifierSource {
 public:
  virtual ~ModifierSource() = default;
  // Whether somebody needs to know; without that no keyboard is listened to, and nothing counts as held.
  virtual void watch(bool wanted) noexcept = 0;
};

}  // namespace veltrix
