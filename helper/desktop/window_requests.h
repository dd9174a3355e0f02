#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "helper/commands/attempt.h"
#include "helper/desktop/x11_atoms.h"
#include "util/result.h"

namespace veltrix {

// What the window manager says on the root window.
struct RootState {
  std::vector<xcb_atom_t> supported;
  xcb_window_t active = XCB_WINDOW_NONE;
  std::uint32_t workspace = 0;  // from 0
  std::uint32_t workspaces = 1;
  bool showsDesktop = false;
};

// What the active window has on it.
struct WindowState {
  std::vector<xcb_atom_t> states;
  std::vector<xcb_atom_t> types;
};

// A client message to the root window.
struct WindowRequest {
  xcb_window_t window = XCB_WINDOW_NONE;
  xcb_atom_t type = XCB_ATOM_NONE;
  std::array<std::uint32_t, 5> data{};
};

// Whether the operation is one on the active window.
bool concernsWindow(DisplayOperation operation);

// The requests that carry out an operation, in their order. None where there is nothing to do: no window but
// the desktop's own is active, this is the first or last workspace, or there is none of that number. An error
// when the window manager does not know the request.
Result<std::vector<WindowRequest>> requestsFor(const DisplayAttempt& attempt, const X11Atoms& atoms,
                                               const RootState& root, const WindowState& window);

}  // namespace veltrix
