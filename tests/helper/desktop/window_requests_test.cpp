#include "helper/desktop/window_requests.h"

#include <gmock/gmock.h>

namespace veltrix {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr xcb_window_t kWindow = 77;

// Every name gets a number from 100 on.
X11Atoms atoms() {
  X11Atoms result;
  for (std::size_t i = 0; i < kX11AtomNames.size(); ++i) {
    result.set(i, static_cast<xcb_atom_t>(100 + i));
  }
  return result;
}

// A window manager that knows everything, on the second of three workspaces.
RootState root() {
  RootState state;
  for (xcb_atom_t atom = 100; atom < 100 + kX11AtomNames.size(); ++atom) {
    state.supported.push_back(atom);
  }
  state.active = kWindow;
  state.workspace = 1;
  state.workspaces = 3;
  return state;
}

std::vector<WindowRequest> requests(DisplayAttempt attempt, const RootState& state = root(),
                                    const WindowState& window = {}) {
  const auto result = requestsFor(attempt, atoms(), state, window);
  EXPECT_TRUE(result);
  return result.value();
}

TEST(WindowRequests, WhatTheWindowManagerDoesNotKnowIsAnError) {
  for (int operation = 0; operation < static_cast<int>(DisplayOperation::kTurnOffScreen); ++operation) {
    RootState state = root();
    state.supported = {atoms()[X11Atom::kSupported], atoms()[X11Atom::kActiveWindow]};
    const auto result = requestsFor({static_cast<DisplayOperation>(operation), 1}, atoms(), state, {});
    ASSERT_FALSE(result) << operation;
    EXPECT_THAT(result.error().message, ::testing::StartsWith("the window manager does not know _NET_"));
  }
}

TEST(WindowRequests, WithoutAnActiveWindowNothingIsAsked) {
  RootState state = root();
  state.active = XCB_WINDOW_NONE;
  for (const auto operation :
       {DisplayOperation::kClose, DisplayOperation::kMinimize, DisplayOperation::kToggleMaximized,
        DisplayOperation::kToggleAbove, DisplayOperation::kTakeToNextWorkspace}) {
    EXPECT_THAT(requests({operation}, state), IsEmpty());
  }
}

TEST(WindowRequests, DesktopAndPanelAreNoWindowsOfAPerson) {
  for (const X11Atom type : {X11Atom::kWindowTypeDesktop, X11Atom::kWindowTypeDock}) {
    EXPECT_THAT(requests({DisplayOperation::kClose}, root(), {{}, {atoms()[type]}}), IsEmpty());
  }
}

TEST(WindowRequests, MaximizedWindowIsRestoredAndAnyOtherMaximized) {
  const xcb_atom_t vert = atoms()[X11Atom::kStateMaximizedVert];
  const xcb_atom_t horz = atoms()[X11Atom::kStateMaximizedHorz];
  EXPECT_THAT(requests({DisplayOperation::kToggleMaximized})[0].data, ElementsAre(1, vert, horz, 2, 0));
  EXPECT_THAT(requests({DisplayOperation::kToggleMaximized}, root(), {{vert}, {}})[0].data,
              ElementsAre(1, vert, horz, 2, 0));
  EXPECT_THAT(requests({DisplayOperation::kToggleMaximized}, root(), {{horz, vert}, {}})[0].data,
              ElementsAre(0, vert, horz, 2, 0));
}

TEST(WindowRequests, WorkspacesEndAtBothEnds) {
  RootState state = root();
  EXPECT_EQ(requests({DisplayOperation::kPreviousWorkspace}, state)[0].data[0], 0U);
  EXPECT_EQ(requests({DisplayOperation::kNextWorkspace}, state)[0].data[0], 2U);
  state.workspace = 0;
  EXPECT_THAT(requests({DisplayOperation::kPreviousWorkspace}, state), IsEmpty());
  EXPECT_THAT(requests({DisplayOperation::kTakeToPreviousWorkspace}, state), IsEmpty());
  state.workspace = 2;
  EXPECT_THAT(requests({DisplayOperation::kNextWorkspace}, state), IsEmpty());
  EXPECT_THAT(requests({DisplayOperation::kTakeToNextWorkspace}, state), IsEmpty());
}

TEST(WindowRequests, WorkspaceThatDoesNotExistIsNotMade) {
  EXPECT_EQ(requests({DisplayOperation::kWorkspace, 3})[0].data[0], 2U);
  EXPECT_THAT(requests({DisplayOperation::kWorkspace, 4}), IsEmpty());
  EXPECT_THAT(requests({DisplayOperation::kWorkspace, 2}), IsEmpty());
}

TEST(WindowRequests, WindowThatIsTakenAlongIsFollowedAndActive) {
  const auto taken = requests({DisplayOperation::kTakeToNextWorkspace});
  ASSERT_EQ(taken.size(), 3U);
  EXPECT_EQ(taken[0].type, atoms()[X11Atom::kCurrentDesktop]);
  EXPECT_EQ(taken[0].data[0], 2U);
  EXPECT_EQ(taken[1].window, kWindow);
  EXPECT_EQ(taken[1].type, atoms()[X11Atom::kDesktop]);
  EXPECT_EQ(taken[1].data[0], 2U);
  EXPECT_EQ(taken[2].window, kWindow);
  EXPECT_EQ(taken[2].type, atoms()[X11Atom::kActiveWindow]);
}

TEST(WindowRequests, WindowIsShownEverywhereWhileItIsTakenAlong) {
  const auto plain = requests({DisplayOperation::kTakeToNextWorkspace});
  const auto shown = requests({DisplayOperation::kTakeToNextWorkspace, 0, true});
  ASSERT_EQ(shown.size(), plain.size() + 1);
  EXPECT_EQ(shown[0].window, kWindow);
  EXPECT_EQ(shown[0].type, atoms()[X11Atom::kDesktop]);
  EXPECT_EQ(shown[0].data[0], 0xFFFFFFFFU);
  EXPECT_EQ(shown[2].type, atoms()[X11Atom::kDesktop]);
  EXPECT_EQ(shown[2].data[0], 2U);
}

TEST(WindowRequests, DesktopIsShownAndWindowsComeBack) {
  RootState state = root();
  EXPECT_EQ(requests({DisplayOperation::kToggleShowDesktop}, state)[0].data[0], 1U);
  state.showsDesktop = true;
  EXPECT_EQ(requests({DisplayOperation::kToggleShowDesktop}, state)[0].data[0], 0U);
}

}  // namespace
}  // namespace veltrix
