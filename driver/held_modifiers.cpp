#include "driver/held_modifiers.h"

namespace veltrix {

void HeldModifiers::add(const input_event& event) noexcept {
  // The state that the kernel could be asked for would tell of every key. Held for a moment too short is
  // less than that.
  if (event.type == EV_SYN && event.code == SYN_DROPPED)
    fDown = 0;
  if (event.type != EV_KEY)
    return;
  for (unsigned i = 0; i < kModifierKeys.size(); ++i) {
    if (kModifierKeys[i].code != event.code)
      continue;
    const auto bit = static_cast<std::uint16_t>(1U << i);
    if (event.value == 0)
      fDown &= static_cast<std::uint16_t>(~bit);
    else
      fDown |= bit;
  }
}

std::uint8_t HeldModifiers::held() const noexcept {
  std::uint8_t held = 0;
  for (unsigned i = 0; i < kModifierKeys.size(); ++i) {
    if ((fDown >> i & 1U) != 0)
      held |= kModifierKeys[i].held;
  }
  return held;
}

}  // namespace veltrix
