#pragma once

#include <xcb/xcb.h>

#include <array>
#include <cstddef>

namespace veltrix {

// The names that the server has numbers for.
enum class X11Atom : std::size_t {
  kSupported,
  kActiveWindow,
  kCloseWindow,
  kChangeState,
  kState,
  kStateHidden,
  kStateMaximizedVert,
  kStateMaximizedHorz,
  kStateAbove,
  kWindowType,
  kWindowTypeDesktop,
  kWindowTypeDock,
  kCurrentDesktop,
  kNumberOfDesktops,
  kDesktop,
  kShowingDesktop,
};

inline constexpr std::array<const char*, 16> kX11AtomNames = {
    "_NET_SUPPORTED",
    "_NET_ACTIVE_WINDOW",
    "_NET_CLOSE_WINDOW",
    "WM_CHANGE_STATE",
    "_NET_WM_STATE",
    "_NET_WM_STATE_HIDDEN",
    "_NET_WM_STATE_MAXIMIZED_VERT",
    "_NET_WM_STATE_MAXIMIZED_HORZ",
    "_NET_WM_STATE_ABOVE",
    "_NET_WM_WINDOW_TYPE",
    "_NET_WM_WINDOW_TYPE_DESKTOP",
    "_NET_WM_WINDOW_TYPE_DOCK",
    "_NET_CURRENT_DESKTOP",
    "_NET_NUMBER_OF_DESKTOPS",
    "_NET_WM_DESKTOP",
    "_NET_SHOWING_DESKTOP",
};

// The numbers; 0 for one that is not known yet.
class X11Atoms {
 public:
  xcb_atom_t operator[](X11Atom atom) const { return fAtoms[static_cast<std::size_t>(atom)]; }
  void set(std::size_t index, xcb_atom_t atom) { fAtoms[index] = atom; }

 private:
  std::array<xcb_atom_t, kX11AtomNames.size()> fAtoms{};
};

}  // namespace veltrix
