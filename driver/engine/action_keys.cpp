#include "driver/engine/action_keys.h"

#include <array>

namespace veltrix {

namespace {

struct ModifierKey {
  std::uint16_t mask;
  std::uint16_t code;
};

constexpr std::array<ModifierKey, 5> kModifierKeys{{
    {0x0100, KEY_LEFTMETA},
    {0x0200, KEY_LEFTSHIFT},
    {0x0400, KEY_CAPSLOCK},
    {0x0800, KEY_LEFTALT},
    {0x1000, KEY_LEFTCTRL},
}};

}  // namespace

void ActionKeys::pressModifiers(std::uint16_t mask, Output& output) noexcept {
  for (const ModifierKey& key : kModifierKeys) {
    if ((mask & key.mask) == 0 || !fHeld.press(key.code))
      continue;
    output.key(key.code, true);
    if (key.code == KEY_CAPSLOCK)
      fCapsLockTurned = true;
  }
  output.sync();
}

void ActionKeys::releaseModifiers(std::uint16_t mask, Output& output) noexcept {
  for (auto key = kModifierKeys.rbegin(); key != kModifierKeys.rend(); ++key) {
    if ((mask & key->mask) != 0 && fHeld.release(key->code))
      output.key(key->code, false);
  }
  output.sync();
  undoCapsLock(output);
}

void ActionKeys::press(std::uint16_t code, Output& output) noexcept {
  if (fHeld.press(code))
    output.key(code, true);
  output.sync();
}

void ActionKeys::release(std::uint16_t code, Output& output) noexcept {
  if (fHeld.release(code))
    output.key(code, false);
  output.sync();
  undoCapsLock(output);
}

void ActionKeys::releaseAll(Output& output) noexcept {
  const auto held = fHeld.held();
  for (auto code = held.rbegin(); code != held.rend(); ++code) {
    output.key(*code, false);
    output.sync();
  }
  fHeld.clear();
  undoCapsLock(output);
}

void ActionKeys::undoCapsLock(Output& output) noexcept {
  if (!fCapsLockTurned || fHeld.isHeld(KEY_CAPSLOCK))
    return;
  fCapsLockTurned = false;
  for (const bool down : {true, false}) {
    output.key(KEY_CAPSLOCK, down);
    output.sync();
  }
}

}  // namespace veltrix
