#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/layout_names.h"
#include "platform/xkb_handles.h"

struct xcb_connection_t;

// Where keymaps come from. A source that does not answer gives an empty keymap.
namespace veltrix::xkb {

// The layout that others fall back on.
inline constexpr const char* kAmericanLayout = "us";

// What keymaps are made in. It says nothing of keyboard data that is not in order: that shows in what is not
// found. The library's own way of reading variables is turned off, so that a layout by name is the same
// everywhere. Null without memory.
Context makeContext();

struct FoundKeymap {
  Keymap keymap;
  xkb_layout_index_t group = 0;  // the layout in effect among those of the keymap
};

// The keymap of the X server's keyboard and the group in effect.
FoundKeymap keymapOfXServer(xkb_context* context, const std::string& display);

// Makes a connection ready for keymapOfXConnection; gives the number of the keyboard extension's events, or
// nothing when the server lacks it. These wait for the server, which answers soon when it answers at all.
std::optional<std::uint8_t> prepareForKeymaps(xcb_connection_t* connection);
FoundKeymap keymapOfXConnection(xkb_context* context, xcb_connection_t* connection);

// The keymap of the first keyboard among the compositor's seats. A compositor tells the group only to who has
// the focus, so it is the first one. Gives up after a quarter of a second.
FoundKeymap keymapOfWaylandSeat(xkb_context* context, const std::string& display);

// The keymap that the system's keyboard data has under these names; empty when it has none.
FoundKeymap keymapOfNames(xkb_context* context, const LayoutNames& names);

// The keymap of these names, else of those in the file (empty for none), else the American one; empty when
// the system has no keyboard data.
FoundKeymap keymapOfSystem(xkb_context* context, const std::optional<LayoutNames>& names,
                           const std::string& defaultsFile);

}  // namespace veltrix::xkb
