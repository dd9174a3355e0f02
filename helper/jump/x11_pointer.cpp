#include "helper/jump/x11_pointer.h"

#include <xcb/xcb.h>

#include <algorithm>
#include <cstdlib>
#include <string_view>

namespace veltrix {

namespace {

struct Freer {
  void operator()(void* memory) const { std::free(memory); }
};
template <typename T>
using Reply = std::unique_ptr<T, Freer>;

// The ones that are held for dragging; the others stand for turns of a wheel.
constexpr std::uint16_t kDragButtons = XCB_BUTTON_MASK_1 | XCB_BUTTON_MASK_2 | XCB_BUTTON_MASK_3;

constexpr int kDeepestWindow = 64;

// In words of 32 bits; none of the properties that are read here needs more.
constexpr std::uint32_t kLongestProperty = 32;

std::uint32_t atomOf(xcb_connection_t* x, std::string_view name) {
  const auto length = static_cast<std::uint16_t>(name.size());
  const Reply<xcb_intern_atom_reply_t> reply(
      xcb_intern_atom_reply(x, xcb_intern_atom(x, 0, length, name.data()), nullptr));
  return reply != nullptr ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

}  // namespace

void XConnectionCloser::operator()(xcb_connection_t* connection) const {
  xcb_disconnect(connection);
}

X11Pointer::X11Pointer(std::unique_ptr<xcb_connection_t, XConnectionCloser> connection, std::uint32_t root)
    : fConnection(std::move(connection)), fRoot(root) {
  xcb_connection_t* const x = fConnection.get();
  fActiveWindowAtom = atomOf(x, "_NET_ACTIVE_WINDOW");
  fWindowTypeAtom = atomOf(x, "_NET_WM_WINDOW_TYPE");
  fDialogTypeAtom = atomOf(x, "_NET_WM_WINDOW_TYPE_DIALOG");
  fProcessIdAtom = atomOf(x, "_NET_WM_PID");
  const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
  xcb_change_window_attributes(x, fRoot, XCB_CW_EVENT_MASK, &events);
  xcb_flush(x);
}

std::unique_ptr<X11Pointer> X11Pointer::open() {
  int number = 0;
  std::unique_ptr<xcb_connection_t, XConnectionCloser> connection(xcb_connect(nullptr, &number));
  if (xcb_connection_has_error(connection.get()) != 0)
    return nullptr;
  xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(connection.get()));
  for (; number > 0 && screens.rem > 1; --number) xcb_screen_next(&screens);
  const std::uint32_t root = screens.data->root;
  return std::unique_ptr<X11Pointer>(new X11Pointer(std::move(connection), root));
}

// Programs give the keyboard to a window deep inside of theirs; window managers put a frame around it.
std::uint32_t X11Pointer::activeWindow() {
  xcb_connection_t* const x = fConnection.get();
  const Reply<xcb_get_input_focus_reply_t> focus(
      xcb_get_input_focus_reply(x, xcb_get_input_focus(x), nullptr));
  if (focus == nullptr || focus->focus <= XCB_INPUT_FOCUS_FOLLOW_KEYBOARD)
    return 0;
  std::uint32_t window = focus->focus;
  for (int i = 0; i < kDeepestWindow && window != fRoot; ++i) {
    const Reply<xcb_query_tree_reply_t> tree(xcb_query_tree_reply(x, xcb_query_tree(x, window), nullptr));
    if (tree == nullptr)
      return 0;
    if (tree->parent == fRoot)
      return window;
    window = tree->parent;
  }
  return 0;
}

std::optional<ScreenArea> X11Pointer::areaOf(std::uint32_t window) {
  xcb_connection_t* const x = fConnection.get();
  const Reply<xcb_get_geometry_reply_t> geometry(
      xcb_get_geometry_reply(x, xcb_get_geometry(x, window), nullptr));
  if (geometry == nullptr)
    return std::nullopt;
  return ScreenArea{geometry->x, geometry->y, geometry->width + 2 * geometry->border_width,
                    geometry->height + 2 * geometry->border_width};
}

std::optional<ScreenState> X11Pointer::look() {
  xcb_connection_t* const x = fConnection.get();
  const Reply<xcb_query_pointer_reply_t> pointer(
      xcb_query_pointer_reply(x, xcb_query_pointer(x, fRoot), nullptr));
  if (pointer == nullptr)
    return std::nullopt;
  ScreenState state;
  state.pointer = {pointer->root_x, pointer->root_y};
  state.buttonHeld = (pointer->mask & kDragButtons) != 0;
  state.activeWindow = activeWindow();
  const auto area = areaOf(state.activeWindow != 0 ? state.activeWindow : fRoot);
  if (!area)
    return std::nullopt;
  state.activeArea = *area;
  return state;
}

void X11Pointer::moveTo(ScreenPoint point) {
  xcb_warp_pointer(fConnection.get(), XCB_NONE, fRoot, 0, 0, 0, 0, static_cast<std::int16_t>(point.x),
                   static_cast<std::int16_t>(point.y));
  xcb_flush(fConnection.get());
}

void X11Pointer::watch(std::uint32_t window) {
  const std::uint32_t events = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
  xcb_change_window_attributes(fConnection.get(), window, XCB_CW_EVENT_MASK, &events);
  xcb_flush(fConnection.get());
}

std::vector<std::uint32_t> X11Pointer::takeClosed() {
  constexpr unsigned kSentByClient = 0x80;
  std::vector<std::uint32_t> closed;
  while (true) {
    const Reply<xcb_generic_event_t> event(xcb_poll_for_event(fConnection.get()));
    if (event == nullptr)
      return closed;
    const unsigned type = event->response_type & ~kSentByClient;
    if (type == XCB_UNMAP_NOTIFY)
      closed.push_back(reinterpret_cast<const xcb_unmap_notify_event_t*>(event.get())->window);
    else if (type == XCB_DESTROY_NOTIFY)
      closed.push_back(reinterpret_cast<const xcb_destroy_notify_event_t*>(event.get())->window);
    else if (type == XCB_PROPERTY_NOTIFY)
      fFrontChanged =
          fFrontChanged ||
          reinterpret_cast<const xcb_property_notify_event_t*>(event.get())->atom == fActiveWindowAtom;
  }
}

std::vector<std::uint32_t> X11Pointer::property(std::uint32_t window, std::uint32_t name,
                                                std::uint32_t type) {
  xcb_connection_t* const x = fConnection.get();
  const Reply<xcb_get_property_reply_t> reply(
      xcb_get_property_reply(x, xcb_get_property(x, 0, window, name, type, 0, kLongestProperty), nullptr));
  if (reply == nullptr || reply->format != 32)
    return {};
  const auto* first = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
  return {first, first + reply->value_len};
}

FrontWindow X11Pointer::frontWindow() {
  const auto windows = property(fRoot, fActiveWindowAtom, XCB_ATOM_WINDOW);
  if (windows.empty() || windows.front() == XCB_NONE)
    return {};
  const auto types = property(windows.front(), fWindowTypeAtom, XCB_ATOM_ATOM);
  const auto ids = property(windows.front(), fProcessIdAtom, XCB_ATOM_CARDINAL);
  return {std::find(types.begin(), types.end(), fDialogTypeAtom) != types.end(),
          ids.empty() ? 0 : ids.front()};
}

int X11Pointer::descriptor() const {
  return xcb_get_file_descriptor(fConnection.get());
}

bool X11Pointer::isLost() const {
  return xcb_connection_has_error(fConnection.get()) != 0;
}

}  // namespace veltrix
