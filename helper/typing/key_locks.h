#pragma once

#include <cstdint>
#include <optional>

#include "platform/xkb_handles.h"

namespace veltrix {

// The modifiers that are locked when a keyboard under that group shows these lamps, k...Lamp bits of
// driverlink/packets.h. What a keymap makes of its lamps decides: one that shows the group says nothing of
// locks.
xkb_mod_mask_t lockedBy(std::uint16_t lamps, xkb_keymap* keymap, xkb_layout_index_t group);

// The key that, pressed and released alone, turns `locked` into `lifted`, and back when it is pressed once
// more. Nothing when there is none.
std::optional<std::uint16_t> keyThatLifts(xkb_keymap* keymap, xkb_layout_index_t group, xkb_mod_mask_t locked,
                                          xkb_mod_mask_t lifted);

}  // namespace veltrix
