#include <poll.h>
#include <sys/mman.h>
#include <wayland-client.h>

#include <chrono>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "platform/keymap_sources.h"
#include "util/file_descriptor.h"

namespace veltrix::xkb {
namespace {

using Clock = std::chrono::steady_clock;
constexpr std::chrono::milliseconds kPatience{250};

using Display = std::unique_ptr<wl_display, Release<wl_display_disconnect>>;
using Registry = std::unique_ptr<wl_registry, Release<wl_registry_destroy>>;
using Seat = std::unique_ptr<wl_seat, Release<wl_seat_destroy>>;
using Keyboard = std::unique_ptr<wl_keyboard, Release<wl_keyboard_destroy>>;
using Callback = std::unique_ptr<wl_callback, Release<wl_callback_destroy>>;

// What the compositor has told so far. Only the first seat with a keyboard is asked.
struct Search {
  xkb_context* context;
  Registry registry;
  std::vector<Seat> seats;
  Keyboard keyboard;
  Keymap keymap;
};

void takeKeymap(void* data, wl_keyboard* /*keyboard*/, std::uint32_t format, std::int32_t descriptor,
                std::uint32_t size) {
  auto* search = static_cast<Search*>(data);
  const FileDescriptor file(descriptor);
  if (format != WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1 || size == 0) {
    return;
  }
  void* text = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file.get(), 0);
  if (text == MAP_FAILED) {
    return;
  }
  const std::size_t length = strnlen(static_cast<const char*>(text), size);
  search->keymap.reset(xkb_keymap_new_from_buffer(search->context, static_cast<const char*>(text), length,
                                                  XKB_KEYMAP_FORMAT_TEXT_V1, XKB_KEYMAP_COMPILE_NO_FLAGS));
  munmap(text, size);
}

// What else a keyboard tells does not matter here, but a listener must take it.
constexpr wl_keyboard_listener kKeyboardListener = {
    takeKeymap,
    [](void*, wl_keyboard*, std::uint32_t, wl_surface*, wl_array*) {},
    [](void*, wl_keyboard*, std::uint32_t, wl_surface*) {},
    [](void*, wl_keyboard*, std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t) {},
    [](void*, wl_keyboard*, std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t) {},
    [](void*, wl_keyboard*, std::int32_t, std::int32_t) {}};

void takeCapabilities(void* data, wl_seat* seat, std::uint32_t capabilities) {
  auto* search = static_cast<Search*>(data);
  if ((capabilities & WL_SEAT_CAPABILITY_KEYBOARD) != 0 && !search->keyboard) {
    search->keyboard.reset(wl_seat_get_keyboard(seat));
    wl_keyboard_add_listener(search->keyboard.get(), &kKeyboardListener, search);
  }
}

constexpr wl_seat_listener kSeatListener = {takeCapabilities, [](void*, wl_seat*, const char*) {}};

void takeGlobal(void* data, wl_registry* registry, std::uint32_t name, const char* interface,
                std::uint32_t /*version*/) {
  auto* search = static_cast<Search*>(data);
  if (std::strcmp(interface, wl_seat_interface.name) == 0) {
    auto* seat = static_cast<wl_seat*>(wl_registry_bind(registry, name, &wl_seat_interface, 1));
    search->seats.emplace_back(seat);
    wl_seat_add_listener(seat, &kSeatListener, search);
  }
}

constexpr wl_registry_listener kRegistryListener = {takeGlobal, [](void*, wl_registry*, std::uint32_t) {}};

// Handles what has come in, waiting for more until `deadline`. False when the time is up or the other side
// gone.
bool dispatch(wl_display* display, Clock::time_point deadline) {
  while (wl_display_prepare_read(display) != 0) {
    if (wl_display_dispatch_pending(display) > 0) {
      return true;
    }
  }
  wl_display_flush(display);
  const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now()).count();
  pollfd waiting{wl_display_get_fd(display), POLLIN, 0};
  if (left <= 0 || poll(&waiting, 1, static_cast<int>(left)) <= 0) {
    wl_display_cancel_read(display);
    return false;
  }
  return wl_display_read_events(display) == 0 && wl_display_dispatch_pending(display) >= 0;
}

void answered(void* data, wl_callback* /*callback*/, std::uint32_t /*serial*/) {
  *static_cast<bool*>(data) = true;
}

constexpr wl_callback_listener kCallbackListener = {answered};

// Waits until the compositor has answered everything that was asked. False when it does not.
bool roundTrip(wl_display* display, Clock::time_point deadline) {
  bool done = false;
  const Callback callback(wl_display_sync(display));
  wl_callback_add_listener(callback.get(), &kCallbackListener, &done);
  while (!done) {
    if (!dispatch(display, deadline)) {
      return false;
    }
  }
  return true;
}

}  // namespace

FoundKeymap keymapOfWaylandSeat(xkb_context* context, const std::string& name) {
  // The connection that this variable names was made for somebody, who takes it only once.
  if (std::getenv("WAYLAND_SOCKET") != nullptr) {
    return {};
  }
  const Display display(wl_display_connect(name.c_str()));
  if (!display) {
    return {};
  }
  const auto deadline = Clock::now() + kPatience;
  Search search{context, Registry(wl_display_get_registry(display.get())), {}, nullptr, nullptr};
  wl_registry_add_listener(search.registry.get(), &kRegistryListener, &search);
  // One trip each for the seats, their capabilities and the keymap.
  for (int trip = 0; trip < 3 && !search.keymap; ++trip) {
    if (!roundTrip(display.get(), deadline)) {
      break;
    }
  }
  return {std::move(search.keymap), 0};
}

}  // namespace veltrix::xkb
