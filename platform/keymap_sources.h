#pragma once

#include <string>

#include "platform/layout_names.h"
#include "platform/xkb_handles.h"

// Where keymaps come from. A source that does not answer gives an empty keymap.
namespace veltrix::xkb {

struct FoundKeymap {
  Keymap keymap;
  xkb_layout_index_t group = 0;  // the layout in effect among those of the keymap
};

// The keymap of the X server's keyboard and the group in effect.
FoundKeymap keymapOfXServer(xkb_context* context, const std::string& display);

// The keymap of the first keyboard among the compositor's seats. A compositor tells the group only to who has
// the focus, so it is the first one. Gives up after a quarter of a second.
FoundKeymap keymapOfWaylandSeat(xkb_context* context, const std::string& display);

// The keymap that the system's keyboard data has under these names; empty when it has none.
FoundKeymap keymapOfNames(xkb_context* context, const LayoutNames& names);

}  // namespace veltrix::xkb
