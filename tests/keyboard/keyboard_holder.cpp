// Tries to grab the keyboard of the X server, says "held" or "refused", and gives it back when its standard
// input ends.
#include <unistd.h>
#include <xcb/xcb.h>

#include <cstdio>
#include <cstdlib>
#include <memory>

int main() {
  const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> connection(xcb_connect(nullptr, nullptr),
                                                                                xcb_disconnect);
  if (xcb_connection_has_error(connection.get()) != 0) {
    std::fputs("keyboard_holder: no X server\n", stderr);
    return 1;
  }
  const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection.get())).data->root;
  const auto cookie = xcb_grab_keyboard(connection.get(), 0, root, XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC,
                                        XCB_GRAB_MODE_ASYNC);
  const std::unique_ptr<xcb_grab_keyboard_reply_t, decltype(&std::free)> reply(
      xcb_grab_keyboard_reply(connection.get(), cookie, nullptr), std::free);
  const bool held = reply != nullptr && reply->status == XCB_GRAB_STATUS_SUCCESS;
  std::puts(held ? "held" : "refused");
  std::fflush(stdout);
  char byte = 0;
  while (held && read(STDIN_FILENO, &byte, 1) > 0) {
  }
  return held ? 0 : 1;
}
