#include <xcb/xcb.h>
#include <xkbcommon/xkbcommon-x11.h>

#include "platform/keymap_sources.h"

namespace veltrix::xkb {
namespace {

using Connection = std::unique_ptr<xcb_connection_t, Release<xcb_disconnect>>;

}  // namespace

FoundKeymap keymapOfXServer(xkb_context* context, const std::string& display) {
  const Connection connection(xcb_connect(display.c_str(), nullptr));
  return xcb_connection_has_error(connection.get()) == 0 && prepareForKeymaps(connection.get())
             ? keymapOfXConnection(context, connection.get())
             : FoundKeymap();
}

std::optional<std::uint8_t> prepareForKeymaps(xcb_connection_t* connection) {
  std::uint8_t firstEvent = 0;
  const bool prepared =
      xkb_x11_setup_xkb_extension(connection, XKB_X11_MIN_MAJOR_XKB_VERSION, XKB_X11_MIN_MINOR_XKB_VERSION,
                                  XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr, &firstEvent,
                                  nullptr) != 0;
  return prepared ? std::optional(firstEvent) : std::nullopt;
}

FoundKeymap keymapOfXConnection(xkb_context* context, xcb_connection_t* connection) {
  const auto device = xkb_x11_get_core_keyboard_device_id(connection);
  if (device < 0) {
    return {};
  }
  FoundKeymap found;
  found.keymap.reset(
      xkb_x11_keymap_new_from_device(context, connection, device, XKB_KEYMAP_COMPILE_NO_FLAGS));
  if (!found.keymap) {
    return {};
  }
  const State state(xkb_x11_state_new_from_device(found.keymap.get(), connection, device));
  if (state) {
    found.group = xkb_state_serialize_layout(state.get(), XKB_STATE_LAYOUT_EFFECTIVE);
  }
  return found;
}

}  // namespace veltrix::xkb
