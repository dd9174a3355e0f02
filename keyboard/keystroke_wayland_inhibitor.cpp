#include "keyboard/keystroke_wayland_inhibitor.h"

#include <keyboard-shortcuts-inhibit-client.h>
#include <qpa/qplatformnativeinterface.h>
#include <wayland-client.h>

#include <QByteArray>
#include <QGuiApplication>
#include <cstring>

namespace veltrix {
namespace {

template <typename Resource>
Resource* ofApplication(const char* name) {
  QPlatformNativeInterface* native = QGuiApplication::platformNativeInterface();
  return static_cast<Resource*>(native->nativeResourceForIntegration(QByteArray(name)));
}

}  // namespace

// The answer to the list of globals comes through the toolkit's own queue, so nothing waits for it here.
WaylandShortcutsInhibitor::WaylandShortcutsInhibitor(QWindow* window)
    : fSeat(ofApplication<wl_seat>("wl_seat")) {
  QPlatformNativeInterface* native = QGuiApplication::platformNativeInterface();
  fSurface = static_cast<wl_surface*>(native->nativeResourceForWindow(QByteArrayLiteral("surface"), window));
  auto* display = ofApplication<wl_display>("wl_display");
  if (display == nullptr || fSurface == nullptr || fSeat == nullptr) {
    return;
  }
  static constexpr wl_registry_listener kListener = {
      .global = takeGlobal,
      .global_remove = [](void*, wl_registry*, std::uint32_t) noexcept {},
  };
  fRegistry = wl_display_get_registry(display);
  wl_registry_add_listener(fRegistry, &kListener, this);
}

WaylandShortcutsInhibitor::~WaylandShortcutsInhibitor() {
  if (fInhibitor != nullptr) {
    zwp_keyboard_shortcuts_inhibitor_v1_destroy(fInhibitor);
  }
  if (fManager != nullptr) {
    zwp_keyboard_shortcuts_inhibit_manager_v1_destroy(fManager);
  }
  if (fRegistry != nullptr) {
    wl_registry_destroy(fRegistry);
  }
}

void WaylandShortcutsInhibitor::takeGlobal(void* self, wl_registry* registry, std::uint32_t name,
                                           const char* interface, std::uint32_t /*version*/) noexcept {
  auto* inhibitor = static_cast<WaylandShortcutsInhibitor*>(self);
  const wl_interface& wanted = zwp_keyboard_shortcuts_inhibit_manager_v1_interface;
  if (inhibitor->fManager != nullptr || std::strcmp(interface, wanted.name) != 0) {
    return;
  }
  inhibitor->fManager =
      static_cast<zwp_keyboard_shortcuts_inhibit_manager_v1*>(wl_registry_bind(registry, name, &wanted, 1));
  inhibitor->inhibit();
}

void WaylandShortcutsInhibitor::inhibit() {
  using Inhibitor = zwp_keyboard_shortcuts_inhibitor_v1;
  static constexpr zwp_keyboard_shortcuts_inhibitor_v1_listener kListener = {
      .active = [](void* self,
                   Inhibitor*) noexcept { static_cast<WaylandShortcutsInhibitor*>(self)->fActive = true; },
      .inactive = [](void* self,
                     Inhibitor*) noexcept { static_cast<WaylandShortcutsInhibitor*>(self)->fActive = false; },
  };
  fInhibitor = zwp_keyboard_shortcuts_inhibit_manager_v1_inhibit_shortcuts(fManager, fSurface, fSeat);
  zwp_keyboard_shortcuts_inhibitor_v1_add_listener(fInhibitor, &kListener, this);
}

}  // namespace veltrix
