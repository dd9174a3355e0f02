#pragma once

#include <cstdint>

class QWindow;
struct wl_registry;
struct wl_seat;
struct wl_surface;
struct zwp_keyboard_shortcuts_inhibit_manager_v1;
struct zwp_keyboard_shortcuts_inhibitor_v1;

namespace veltrix {

// Asks the Wayland compositor, for as long as the object lives, to pass its own shortcuts on to a window
// while that has the keyboard. The compositor may refuse, and one without the protocol is never asked;
// nothing tells of either. On the main thread, in a process whose platform is Wayland.
class WaylandShortcutsInhibitor {
 public:
  explicit WaylandShortcutsInhibitor(QWindow* window);
  ~WaylandShortcutsInhibitor();
  WaylandShortcutsInhibitor(const WaylandShortcutsInhibitor&) = delete;
  WaylandShortcutsInhibitor& operator=(const WaylandShortcutsInhibitor&) = delete;

  // Whether the compositor has agreed.
  bool isActive() const { return fActive; }

 private:
  static void takeGlobal(void* self, wl_registry* registry, std::uint32_t name, const char* interface,
                         std::uint32_t version) noexcept;
  void inhibit();

  wl_surface* fSurface = nullptr;  // the toolkit's, as is the seat
  wl_seat* fSeat = nullptr;
  wl_registry* fRegistry = nullptr;
  zwp_keyboard_shortcuts_inhibit_manager_v1* fManager = nullptr;
  zwp_keyboard_shortcuts_inhibitor_v1* fInhibitor = nullptr;
  bool fActive = false;
};

}  // namespace veltrix
