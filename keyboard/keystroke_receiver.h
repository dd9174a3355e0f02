#pragma once

#include <cstdint>

namespace veltrix {

// Whoever records the keystrokes that a person types into a keystroke field: the action editor.
class KeystrokeReceiver {
 public:
  virtual ~KeystrokeReceiver() = default;

  // Whether key presses are to be recorded now instead of doing what they usually do.
  virtual bool vtxOverrideKeysIsActive() const = 0;

  // A key was pressed: its virtual key code, the first UTF-16 unit that it types (0 for none), and the mask
  // of the modifiers that were held (settings/modifier_mask.h).
  virtual void vtxReceiveKeystroke(std::uint8_t keyCode, char16_t withCharacter,
                                   std::uint16_t andModifiers) = 0;
};

}  // namespace veltrix
