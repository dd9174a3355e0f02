#pragma once

#include <xkbcommon/xkbcommon.h>

#include <optional>

#include "helper/typing/key_table.h"

namespace veltrix {

// Where a key lies that a keymap does not have: characters on the American keyboard, by which programs and
// desktops know the keys of other scripts, and keys with a name where the kernel has them. Nothing for other
// keysyms.
std::optional<KeysymKey> knownPlaceOf(xkb_keysym_t keysym);

}  // namespace veltrix
