#include "helper/typing/key_locks.h"

#include "driverlink/packets.h"
#include "helper/typing/modifier_keys.h"

namespace veltrix {
namespace {

constexpr xkb_mod_index_t kRealModifiers = 8;  // the others stand for some of these

xkb_mod_mask_t lockedBy(const char* lamp, xkb_keymap* keymap, xkb_layout_index_t group) {
  const auto isLit = [&](xkb_mod_mask_t locked) {
    const auto state = stateOfGroup(keymap, group, locked);
    return xkb_state_led_name_is_active(state.get(), lamp) > 0;
  };
  if (isLit(0)) {
    return 0;
  }
  for (xkb_mod_index_t modifier = 0; modifier < kRealModifiers; ++modifier) {
    if (isLit(xkb_mod_mask_t{1} << modifier)) {
      return xkb_mod_mask_t{1} << modifier;
    }
  }
  return 0;
}

bool tapTurns(xkb_keymap* keymap, xkb_layout_index_t group, std::uint16_t code, xkb_mod_mask_t from,
              xkb_mod_mask_t to) {
  const auto state = stateOfGroup(keymap, group, from);
  const HeldKeys key{code};
  pressKeys(state.get(), key);
  releaseKeys(state.get(), key);
  return xkb_state_serialize_mods(state.get(), XKB_STATE_MODS_EFFECTIVE) == to &&
         xkb_state_serialize_layout(state.get(), XKB_STATE_LAYOUT_EFFECTIVE) == group;
}

}  // namespace

xkb_mod_mask_t lockedBy(std::uint16_t lamps, xkb_keymap* keymap, xkb_layout_index_t group) {
  xkb_mod_mask_t locked = 0;
  locked |= (lamps & kCapsLockLamp) != 0 ? lockedBy(XKB_LED_NAME_CAPS, keymap, group) : 0;
  locked |= (lamps & kNumLockLamp) != 0 ? lockedBy(XKB_LED_NAME_NUM, keymap, group) : 0;
  return locked;
}

std::optional<std::uint16_t> keyThatLifts(xkb_keymap* keymap, xkb_layout_index_t group, xkb_mod_mask_t locked,
                                          xkb_mod_mask_t lifted) {
  for (std::uint16_t code = kFirstKey; code <= kLastKey; ++code) {
    if (tapTurns(keymap, group, code, locked, lifted) && tapTurns(keymap, group, code, lifted, locked)) {
      return code;
    }
  }
  return std::nullopt;
}

}  // namespace veltrix
