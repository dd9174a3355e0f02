#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/layout_names.h"
#include "util/result.h"

namespace veltrix {

namespace xkb {
class LayoutKeys;
}

// Where the current layout is looked for, in this order; an empty string leaves a place out.
struct KeyboardSources {
  std::string xDisplay;
  std::string waylandDisplay;
  std::optional<LayoutNames> environment;
  std::string defaultsFile;

  // DISPLAY, WAYLAND_DISPLAY, XKB_DEFAULT_* and /etc/default/keyboard.
  static KeyboardSources ofSystem();
};

// What the keys type. The bits of a modifier byte are those of settings/modifier_mask.h, shifted right by
// kModifierByteShift. Copies are not made; one thread at a time.
class KeyboardLayout {
 public:
  // The layout in effect as the first source that answers tells it, else the American one. An error when the
  // keyboard data of the system is not there.
  static Result<KeyboardLayout> current(const KeyboardSources& sources = KeyboardSources::ofSystem());

  // The layout of a name such as "de", "us:dvorak" or, when no layout is called so, a variant of the American
  // one such as "dvorak". An error when there is no such layout.
  static Result<KeyboardLayout> named(std::string_view name);

  KeyboardLayout(KeyboardLayout&&) noexcept;
  KeyboardLayout& operator=(KeyboardLayout&&) noexcept;
  ~KeyboardLayout();

  // The UTF-16 unit that the key of an evdev code types when it goes down while those modifiers are held; 0
  // when it types none, as a dead key does. `deadKeyState` is the sequence of dead keys before it, 0 for
  // none, as this layout gave it, and becomes the one after it. Nothing when there is no such key, or when
  // what would be typed is more than one unit or a sequence that means nothing; the sequence is over then.
  //
  // Keys that have names instead of characters give control characters (see key_characters.h). The keypad
  // gives digits whatever the modifiers and Num Lock are. Keys held with Command or Control are shortcuts:
  // dead keys give their accents and leave the state alone, and letters of other scripts give the Latin ones
  // of the keys.
  std::optional<char16_t> translate(std::uint16_t evdevCode, std::uint8_t modifiers,
                                    std::uint32_t& deadKeyState) const;

 private:
  explicit KeyboardLayout(std::unique_ptr<xkb::LayoutKeys> keys);
  std::unique_ptr<xkb::LayoutKeys> fKeys;
};

}  // namespace veltrix
