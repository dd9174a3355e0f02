#include "helper/desktop/window_requests.h"

#include <algorithm>
#include <initializer_list>

#include "util/phrase.h"

namespace veltrix {
namespace {

using Requests = std::vector<WindowRequest>;

// Window managers heed requests of a "pager" as a person's own wish.
constexpr std::uint32_t kPager = 2;
constexpr std::uint32_t kRemove = 0;
constexpr std::uint32_t kAdd = 1;
constexpr std::uint32_t kToggle = 2;
constexpr std::uint32_t kIconic = 3;
constexpr std::uint32_t kAllWorkspaces = 0xFFFFFFFF;

bool has(const std::vector<xcb_atom_t>& atoms, xcb_atom_t atom) {
  return std::find(atoms.begin(), atoms.end(), atom) != atoms.end();
}

std::vector<X11Atom> neededFor(DisplayOperation operation) {
  switch (operation) {
    case DisplayOperation::kClose:
      return {X11Atom::kActiveWindow, X11Atom::kCloseWindow};
    case DisplayOperation::kMinimize:
      return {X11Atom::kActiveWindow, X11Atom::kStateHidden};
    case DisplayOperation::kToggleMaximized:
      return {X11Atom::kActiveWindow, X11Atom::kStateMaximizedVert, X11Atom::kStateMaximizedHorz};
    case DisplayOperation::kToggleAbove:
      return {X11Atom::kActiveWindow, X11Atom::kStateAbove};
    case DisplayOperation::kTakeToPreviousWorkspace:
    case DisplayOperation::kTakeToNextWorkspace:
      return {X11Atom::kActiveWindow, X11Atom::kDesktop, X11Atom::kCurrentDesktop};
    case DisplayOperation::kPreviousWorkspace:
    case DisplayOperation::kNextWorkspace:
    case DisplayOperation::kWorkspace:
      return {X11Atom::kCurrentDesktop, X11Atom::kNumberOfDesktops};
    case DisplayOperation::kToggleShowDesktop:
      return {X11Atom::kShowingDesktop};
    case DisplayOperation::kTurnOffScreen:
      break;
  }
  return {};
}

// Nothing when it is the one that is shown, or there is none.
std::optional<std::uint32_t> targetOf(const DisplayAttempt& attempt, const RootState& root) {
  std::int64_t target = root.workspace;
  switch (attempt.operation) {
    case DisplayOperation::kPreviousWorkspace:
    case DisplayOperation::kTakeToPreviousWorkspace:
      --target;
      break;
    case DisplayOperation::kNextWorkspace:
    case DisplayOperation::kTakeToNextWorkspace:
      ++target;
      break;
    default:
      target = std::int64_t{attempt.workspace} - 1;
  }
  if (target < 0 || target >= root.workspaces || target == root.workspace) {
    return {};
  }
  return static_cast<std::uint32_t>(target);
}

Requests toWorkspace(const DisplayAttempt& attempt, const X11Atoms& atoms, const RootState& root,
                     xcb_window_t taken) {
  const auto target = targetOf(attempt, root);
  if (!target) {
    return {};
  }
  Requests requests;
  if (attempt.stays) {
    requests.push_back({taken, atoms[X11Atom::kDesktop], {kAllWorkspaces, kPager}});
  }
  requests.push_back({XCB_WINDOW_NONE, atoms[X11Atom::kCurrentDesktop], {*target, XCB_CURRENT_TIME}});
  if (taken != XCB_WINDOW_NONE) {
    // In this order, since a window that goes first is hidden and shown again at once. Another window may
    // have been the last one there.
    requests.push_back({taken, atoms[X11Atom::kDesktop], {*target, kPager}});
    requests.push_back({taken, atoms[X11Atom::kActiveWindow], {kPager, XCB_CURRENT_TIME}});
  }
  return requests;
}

Requests toggleMaximized(const X11Atoms& atoms, xcb_window_t window, const WindowState& state) {
  const xcb_atom_t vert = atoms[X11Atom::kStateMaximizedVert];
  const xcb_atom_t horz = atoms[X11Atom::kStateMaximizedHorz];
  const bool isMaximized = has(state.states, vert) && has(state.states, horz);
  return {{window, atoms[X11Atom::kState], {isMaximized ? kRemove : kAdd, vert, horz, kPager}}};
}

Requests onWindow(const DisplayAttempt& attempt, const X11Atoms& atoms, const RootState& root,
                  const WindowState& state) {
  switch (attempt.operation) {
    case DisplayOperation::kClose:
      return {{root.active, atoms[X11Atom::kCloseWindow], {XCB_CURRENT_TIME, kPager}}};
    case DisplayOperation::kMinimize:
      return {{root.active, atoms[X11Atom::kChangeState], {kIconic}}};
    case DisplayOperation::kToggleMaximized:
      return toggleMaximized(atoms, root.active, state);
    case DisplayOperation::kToggleAbove:
      return {{root.active, atoms[X11Atom::kState], {kToggle, atoms[X11Atom::kStateAbove], 0, kPager}}};
    default:
      return toWorkspace(attempt, atoms, root, root.active);
  }
}

}  // namespace

bool concernsWindow(DisplayOperation operation) {
  switch (operation) {
    case DisplayOperation::kClose:
    case DisplayOperation::kMinimize:
    case DisplayOperation::kToggleMaximized:
    case DisplayOperation::kToggleAbove:
    case DisplayOperation::kTakeToPreviousWorkspace:
    case DisplayOperation::kTakeToNextWorkspace:
      return true;
    default:
      return false;
  }
}

Result<Requests> requestsFor(const DisplayAttempt& attempt, const X11Atoms& atoms, const RootState& root,
                             const WindowState& window) {
  for (const X11Atom needed : neededFor(attempt.operation)) {
    if (!has(root.supported, atoms[needed])) {
      return phrasedError(0, {"the window manager does not know %1",
                              {given(kX11AtomNames[static_cast<std::size_t>(needed)])}});
    }
  }
  if (attempt.operation == DisplayOperation::kToggleShowDesktop) {
    return Requests{{XCB_WINDOW_NONE, atoms[X11Atom::kShowingDesktop], {root.showsDesktop ? 0U : 1U}}};
  }
  if (!concernsWindow(attempt.operation)) {
    return toWorkspace(attempt, atoms, root, XCB_WINDOW_NONE);
  }
  const bool isDesktopItself = has(window.types, atoms[X11Atom::kWindowTypeDesktop]) ||
                               has(window.types, atoms[X11Atom::kWindowTypeDock]);
  if (root.active == XCB_WINDOW_NONE || isDesktopItself) {
    return Requests{};
  }
  return onWindow(attempt, atoms, root, window);
}

}  // namespace veltrix
