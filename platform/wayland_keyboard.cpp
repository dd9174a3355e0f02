#include "platform/wayland_keyboard.h"

#include <sys/mman.h>
#include <wayland-client.h>

#include <cstdlib>
#include <cstring>
#include <utility>

#include "util/file_descriptor.h"

namespace veltrix::xkb {

// What a keyboard or a seat tells besides does not matter here, but a listener must take it.
struct WaylandKeyboard::Listeners {
  static WaylandKeyboard* self(void* data) { return static_cast<WaylandKeyboard*>(data); }

  static constexpr wl_keyboard_listener kKeyboard = {
      [](void* data, wl_keyboard*, std::uint32_t format, std::int32_t descriptor, std::uint32_t size) {
        self(data)->takeKeymap(format, descriptor, size);
      },
      [](void*, wl_keyboard*, std::uint32_t, wl_surface*, wl_array*) {},
      [](void*, wl_keyboard*, std::uint32_t, wl_surface*) {},
      [](void*, wl_keyboard*, std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t) {},
      [](void*, wl_keyboard*, std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t) {},
      [](void*, wl_keyboard*, std::int32_t, std::int32_t) {}};

  static constexpr wl_seat_listener kSeat = {[](void* data, wl_seat* seat, std::uint32_t capabilities) {
                                               self(data)->takeCapabilities(seat, capabilities);
                                             },
                                             [](void*, wl_seat*, const char*) {}};

  static constexpr wl_registry_listener kRegistry = {
      [](void* data, wl_registry* registry, std::uint32_t name, const char* interface, std::uint32_t) {
        if (std::strcmp(interface, wl_seat_interface.name) == 0) {
          self(data)->takeSeat(registry, name);
        }
      },
      [](void*, wl_registry*, std::uint32_t) {}};

  static constexpr wl_callback_listener kTrip = {[](void* data, wl_callback*, std::uint32_t) {
    --self(data)->fTrips;
    self(data)->makeTrip();
  }};
};

void WaylandKeyboard::Releaser::operator()(wl_display* display) const {
  wl_display_disconnect(display);
}

void WaylandKeyboard::Releaser::operator()(wl_registry* registry) const {
  wl_registry_destroy(registry);
}

void WaylandKeyboard::Releaser::operator()(wl_seat* seat) const {
  wl_seat_destroy(seat);
}

void WaylandKeyboard::Releaser::operator()(wl_keyboard* keyboard) const {
  wl_keyboard_destroy(keyboard);
}

void WaylandKeyboard::Releaser::operator()(wl_callback* callback) const {
  wl_callback_destroy(callback);
}

std::unique_ptr<WaylandKeyboard> WaylandKeyboard::connect(xkb_context* context, const std::string& display,
                                                          std::function<void()> changed) {
  // The connection that this variable names was made for somebody, who takes it only once.
  if (std::getenv("WAYLAND_SOCKET") != nullptr) {
    return nullptr;
  }
  Owned<wl_display> connection(wl_display_connect(display.c_str()));
  return connection ? std::unique_ptr<WaylandKeyboard>(
                          new WaylandKeyboard(context, std::move(connection), std::move(changed)))
                    : nullptr;
}

WaylandKeyboard::WaylandKeyboard(xkb_context* context, Owned<wl_display> display,
                                 std::function<void()> changed)
    : fContext(context),
      fChanged(std::move(changed)),
      fDisplay(std::move(display)),
      fRegistry(wl_display_get_registry(fDisplay.get())) {
  wl_registry_add_listener(fRegistry.get(), &Listeners::kRegistry, this);
  makeTrip();
  wl_display_flush(fDisplay.get());
}

void WaylandKeyboard::makeTrip() {
  fTrip.reset(fTrips > 0 ? wl_display_sync(fDisplay.get()) : nullptr);
  if (fTrip) {
    wl_callback_add_listener(fTrip.get(), &Listeners::kTrip, this);
  }
}

int WaylandKeyboard::descriptor() const {
  return wl_display_get_fd(fDisplay.get());
}

bool WaylandKeyboard::dispatch() {
  while (wl_display_prepare_read(fDisplay.get()) != 0) {
    if (wl_display_dispatch_pending(fDisplay.get()) < 0) {
      return false;
    }
  }
  // Reading takes what is there; the library's connections never wait.
  const bool dispatched =
      wl_display_read_events(fDisplay.get()) == 0 && wl_display_dispatch_pending(fDisplay.get()) >= 0;
  wl_display_flush(fDisplay.get());
  return dispatched;
}

void WaylandKeyboard::takeSeat(wl_registry* registry, std::uint32_t name) {
  auto* seat = static_cast<wl_seat*>(wl_registry_bind(registry, name, &wl_seat_interface, 1));
  fSeats.emplace_back(seat);
  wl_seat_add_listener(seat, &Listeners::kSeat, this);
}

// Only the first seat with a keyboard is asked. It may lose its keyboard and get another.
void WaylandKeyboard::takeCapabilities(wl_seat* seat, std::uint32_t capabilities) {
  const bool hasKeyboard = (capabilities & WL_SEAT_CAPABILITY_KEYBOARD) != 0;
  if (hasKeyboard && !fKeyboard) {
    fKeyboardSeat = seat;
    fKeyboard.reset(wl_seat_get_keyboard(seat));
    wl_keyboard_add_listener(fKeyboard.get(), &Listeners::kKeyboard, this);
  } else if (!hasKeyboard && seat == fKeyboardSeat) {
    fKeyboardSeat = nullptr;
    fKeyboard.reset();
  }
}

void WaylandKeyboard::takeKeymap(std::uint32_t format, int descriptor, std::uint32_t size) {
  const FileDescriptor file(descriptor);
  if (format != WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1 || size == 0) {
    return;
  }
  void* text = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file.get(), 0);
  if (text == MAP_FAILED) {
    return;
  }
  const std::size_t length = strnlen(static_cast<const char*>(text), size);
  Keymap keymap(xkb_keymap_new_from_buffer(fContext, static_cast<const char*>(text), length,
                                           XKB_KEYMAP_FORMAT_TEXT_V1, XKB_KEYMAP_COMPILE_NO_FLAGS));
  munmap(text, size);
  if (keymap) {
    fKeymap = std::move(keymap);
    if (fChanged) {
      fChanged();
    }
  }
}

}  // namespace veltrix::xkb
