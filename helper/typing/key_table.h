#pragma once

#include <cstdint>
#include <vector>

#include "helper/typing/modifier_keys.h"

namespace veltrix {

// A key that produces a keysym while a set of modifiers is held.
struct KeysymKey {
  xkb_keysym_t keysym = XKB_KEY_NoSymbol;
  std::uint16_t code = 0;
  std::uint8_t held = 0;  // kHeldShift, kHeldThirdLevel, kHeldFifthLevel
};

// How little one likes to use it: by its place first, keys among the letters before others and the keypad
// last, then by the number of modifiers.
unsigned reluctance(const KeysymKey& key);
bool isOnKeypad(const KeysymKey& key);

// The keysyms that the keys of one group produce while those modifiers are locked, each once with the key
// that suits best, in ascending order. Left out are characters of the keypad that depend on Num Lock and
// whatever changes a lock. The modifier keys are those of the same group and locks.
std::vector<KeysymKey> keysOfGroup(xkb_keymap* keymap, xkb_layout_index_t group, xkb_mod_mask_t locked,
                                   const ModifierKeys& modifiers);

// Null when the table does not have it.
const KeysymKey* findKeysym(const std::vector<KeysymKey>& keys, xkb_keysym_t keysym);

}  // namespace veltrix
