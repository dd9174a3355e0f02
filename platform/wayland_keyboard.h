#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/xkb_handles.h"

struct wl_callback;
struct wl_display;
struct wl_keyboard;
struct wl_registry;
struct wl_seat;

namespace veltrix::xkb {

// The keymap of the first keyboard among a compositor's seats, and every later one. Never waits.
class WaylandKeyboard {
 public:
  // Null when there is no such compositor. `changed` may be empty; it is called by dispatch() after each
  // keymap.
  static std::unique_ptr<WaylandKeyboard> connect(xkb_context* context, const std::string& display,
                                                  std::function<void()> changed);
  WaylandKeyboard(const WaylandKeyboard&) = delete;
  WaylandKeyboard& operator=(const WaylandKeyboard&) = delete;

  int descriptor() const;

  // Handles what has come in. False when the compositor is gone.
  bool dispatch();

  // Whether the compositor has told all that it had to tell at first.
  bool isSettled() const { return fTrips == 0; }

  // Null before the first one.
  Keymap& keymap() { return fKeymap; }

 private:
  struct Releaser {
    void operator()(wl_display* display) const;
    void operator()(wl_registry* registry) const;
    void operator()(wl_seat* seat) const;
    void operator()(wl_keyboard* keyboard) const;
    void operator()(wl_callback* callback) const;
  };
  template <typename T>
  using Owned = std::unique_ptr<T, Releaser>;
  struct Listeners;

  WaylandKeyboard(xkb_context* context, Owned<wl_display> display, std::function<void()> changed);
  void takeSeat(wl_registry* registry, std::uint32_t name);
  void takeCapabilities(wl_seat* seat, std::uint32_t capabilities);
  void takeKeymap(std::uint32_t format, int descriptor, std::uint32_t size);
  void makeTrip();

  xkb_context* fContext;
  std::function<void()> fChanged;
  Owned<wl_display> fDisplay;
  Owned<wl_registry> fRegistry;
  std::vector<Owned<wl_seat>> fSeats;
  wl_seat* fKeyboardSeat = nullptr;
  Owned<wl_keyboard> fKeyboard;
  Keymap fKeymap;
  Owned<wl_callback> fTrip;
  int fTrips = 3;  // one each for the seats, their capabilities and the keymap
};

}  // namespace veltrix::xkb
