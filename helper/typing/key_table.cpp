#include "helper/typing/key_table.h"

#include <linux/input-event-codes.h>

#include <algorithm>
#include <array>
#include <bit>

#include "platform/key_characters.h"

namespace veltrix {
namespace {

constexpr unsigned kKeypadReluctance = 64;
constexpr unsigned kFarReluctance = 16;

// The fewest first.
constexpr std::array<std::uint8_t, 8> kLevelSets{0,
                                                 kHeldShift,
                                                 kHeldThirdLevel,
                                                 kHeldShift | kHeldThirdLevel,
                                                 kHeldFifthLevel,
                                                 kHeldShift | kHeldFifthLevel,
                                                 kHeldThirdLevel | kHeldFifthLevel,
                                                 kHeldShift | kHeldThirdLevel | kHeldFifthLevel};

bool isKeypadCode(std::uint16_t code) {
  return xkb::isOnKeypad(code) || code == KEY_KPPLUSMINUS || code == KEY_KPLEFTPAREN ||
         code == KEY_KPRIGHTPAREN;
}

bool isAmongLetters(std::uint16_t code) {
  return code <= KEY_SPACE || code == KEY_102ND || code == KEY_RO || code == KEY_YEN;
}

// A state with Num Lock the other way round, unless the keymap has no such key.
xkb::State stateWithOtherNumLock(xkb_keymap* keymap, xkb_layout_index_t group, xkb_mod_mask_t locked) {
  auto state = stateOfGroup(keymap, group, locked);
  const auto key = xkb::keycodeOf(KEY_NUMLOCK);
  xkb_state_update_key(state.get(), key, XKB_KEY_DOWN);
  xkb_state_update_key(state.get(), key, XKB_KEY_UP);
  return state;
}

xkb_keysym_t keysymOf(xkb_state* state, std::uint16_t code) {
  return xkb_state_key_get_one_sym(state, xkb::keycodeOf(code));
}

bool typesText(xkb_keysym_t keysym) {
  return xkb_keysym_to_utf32(keysym) >= U' ';
}

}  // namespace

bool isOnKeypad(const KeysymKey& key) {
  return isKeypadCode(key.code);
}

unsigned reluctance(const KeysymKey& key) {
  const auto held = static_cast<unsigned>(std::popcount(key.held));
  if (isOnKeypad(key)) {
    return kKeypadReluctance + held;
  }
  return (isAmongLetters(key.code) ? 0 : kFarReluctance) + held;
}

std::vector<KeysymKey> keysOfGroup(xkb_keymap* keymap, xkb_layout_index_t group, xkb_mod_mask_t locked,
                                   const ModifierKeys& modifiers) {
  std::vector<KeysymKey> keys;
  const auto other = stateWithOtherNumLock(keymap, group, locked);
  const auto plain = stateOfGroup(keymap, group, locked);
  for (const auto held : kLevelSets) {
    const auto hold = modifiers.toHold(held);
    if (!hold || !hold->clean) {
      continue;
    }
    const auto state = stateOfGroup(keymap, group, locked);
    pressKeys(state.get(), hold->keys);
    for (std::uint16_t code = kFirstKey; code <= kLastKey; ++code) {
      const auto keysym = keysymOf(state.get(), code);
      const auto without = keysymOf(plain.get(), code);
      const bool dependsOnLock = isKeypadCode(code) && keysymOf(other.get(), code) != without;
      const bool isReliable = !dependsOnLock || (held == 0 && !typesText(keysym));
      if (keysym != XKB_KEY_NoSymbol && (held == 0 || keysym != without) && isReliable) {
        keys.push_back({keysym, code, held});
      }
    }
  }
  std::stable_sort(keys.begin(), keys.end(), [](const KeysymKey& a, const KeysymKey& b) {
    return a.keysym != b.keysym ? a.keysym < b.keysym : reluctance(a) < reluctance(b);
  });
  const auto end = std::unique(keys.begin(), keys.end(),
                               [](const KeysymKey& a, const KeysymKey& b) { return a.keysym == b.keysym; });
  keys.erase(end, keys.end());
  keys.shrink_to_fit();
  return keys;
}

const KeysymKey* findKeysym(const std::vector<KeysymKey>& keys, xkb_keysym_t keysym) {
  const auto found =
      std::lower_bound(keys.begin(), keys.end(), keysym,
                       [](const KeysymKey& key, xkb_keysym_t wanted) { return key.keysym < wanted; });
  return found != keys.end() && found->keysym == keysym ? &*found : nullptr;
}

}  // namespace veltrix
