#include "pane/modifier_keys.h"

namespace veltrix {
namespace {

constexpr std::uint32_t kCommandBit = 0x0100;
constexpr std::uint32_t kShiftBit = 0x0200;
constexpr std::uint32_t kOptionBit = 0x0800;
constexpr std::uint32_t kControlBit = 0x1000;

}  // namespace

ModifierKeys modifierKeysFromMask(std::uint32_t mask) {
  return {(mask & kCommandBit) != 0, (mask & kShiftBit) != 0, (mask & kOptionBit) != 0,
          (mask & kControlBit) != 0};
}

std::uint32_t maskFromModifierKeys(const ModifierKeys& keys) {
  return (keys.command ? kCommandBit : 0U) | (keys.shift ? kShiftBit : 0U) | (keys.option ? kOptionBit : 0U) |
         (keys.control ? kControlBit : 0U);
}

}  // namespace veltrix
