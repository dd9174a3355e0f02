#pragma once

#include <cstdint>
#include <optional>

class QKeyEvent;

namespace veltrix {

// A key press in the terms of the settings.
struct Keystroke {
  std::uint8_t keyCode = 0;     // virtual key code
  char16_t character = 0;       // the first UTF-16 unit that it types, 0 for none
  std::uint16_t modifiers = 0;  // settings/modifier_mask.h

  bool operator==(const Keystroke&) const = default;
};

// Nothing when the key has no virtual key code, as most media keys.
std::optional<Keystroke> keystrokeOf(const QKeyEvent& event);

// Whether the key itself is a modifier or switches between levels or groups: held or tapped alone it is no
// keystroke.
bool isModifierKey(const QKeyEvent& event);

}  // namespace veltrix
