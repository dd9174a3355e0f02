#pragma once

#include <cstdint>

#include "driver/engine/held_codes.h"
#include "driver/engine/output.h"

namespace veltrix {

// The keys and buttons that actions hold down, and how they reach the output. Each press and release is a
// group of its own, so that no group mixes the devices, nobody sees a click before its modifier keys, and a
// key that goes down and up at one time does both.
class ActionKeys {
 public:
  // `mask` as in RecordAction.modifiers; bits that are no modifier key do nothing.
  void pressModifiers(std::uint16_t mask, Output& output) noexcept;

  // In the opposite order. Caps Lock, which has turned the lock by going down, is tapped once more, so that
  // the lock is as it was.
  void releaseModifiers(std::uint16_t mask, Output& output) noexcept;

  void press(std::uint16_t code, Output& output) noexcept;
  void release(std::uint16_t code, Output& output) noexcept;

  // What is still held, the last one first.
  void releaseAll(Output& output) noexcept;

 private:
  void undoCapsLock(Output& output) noexcept;

  HeldCodes fHeld;
  bool fCapsLockTurned = false;  // by a modifier that is still held
};

}  // namespace veltrix
