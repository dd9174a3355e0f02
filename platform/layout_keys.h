#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "platform/dead_keys.h"
#include "platform/keymap_sources.h"
#include "platform/xkb_handles.h"

namespace veltrix::xkb {

// What the keys of one group of a keymap type, each way of typing with its own rules. Modifiers are a
// modifier byte; nothing stands for more than one UTF-16 unit or for a sequence that means nothing. Not
// thread-safe.
class LayoutKeys {
 public:
  // The keymap must not be empty.
  LayoutKeys(Context context, FoundKeymap found);

  bool hasKey(std::uint32_t key) const;

  // A key in a text, after the dead keys of `deadKeyState`.
  std::optional<char16_t> type(std::uint32_t key, std::uint8_t modifiers, std::uint32_t& deadKeyState);

  // A key of the keypad.
  char16_t typeOnKeypad(std::uint32_t key);

  // A key held with Command or Control.
  std::optional<char16_t> typeShortcut(std::uint32_t key, std::uint8_t modifiers);

 private:
  xkb_keysym_t keysymOf(std::uint32_t key, std::uint8_t modifiers, xkb_layout_index_t group);
  char32_t shortcutCharacter(xkb_keysym_t keysym);
  std::optional<char32_t> latinCharacter(std::uint32_t key, std::uint8_t modifiers);
  LayoutKeys* american();

  Context fContext;
  Keymap fKeymap;
  xkb_layout_index_t fGroup;
  State fState;
  xkb_mod_mask_t fShift;
  xkb_mod_mask_t fCapsLock;
  xkb_mod_mask_t fThirdLevel;
  xkb_mod_mask_t fNumLock;
  DeadKeys fDeadKeys;
  std::unique_ptr<LayoutKeys> fAmerican;  // read when a key needs it
  bool fTriedAmerican = false;
};

}  // namespace veltrix::xkb
