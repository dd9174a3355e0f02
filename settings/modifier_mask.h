#pragma once

#include <cstdint>

// The modifier keys of "slow keys", "single keys" and an action's "mod". Records and key tables carry the
// same mask shifted right by kModifierByteShift.
namespace veltrix {

inline constexpr std::uint16_t kCommandModifier = 0x0100;
inline constexpr std::uint16_t kShiftModifier = 0x0200;
inline constexpr std::uint16_t kCapsLockModifier = 0x0400;
inline constexpr std::uint16_t kOptionModifier = 0x0800;
inline constexpr std::uint16_t kControlModifier = 0x1000;

// The bits that have a control in the pane; the others of a mask are dropped when the user edits it.
inline constexpr std::uint16_t kEditableModifiers =
    kCommandModifier | kShiftModifier | kOptionModifier | kControlModifier;
inline constexpr std::uint16_t kAllModifiers = kEditableModifiers | kCapsLockModifier;

inline constexpr unsigned kModifierByteShift = 8;

}  // namespace veltrix
