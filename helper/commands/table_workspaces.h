#pragma once

#include "helper/commands/table_rows.h"

// Workspaces, and what a desktop shows over its windows.
namespace veltrix::table {

constexpr DisplayAttempt workspace(std::uint8_t number) {
  return {DisplayOperation::kWorkspace, number};
}

// GNOME has keys for its first workspace and for the next one, and none for a number. Where there are fewer
// workspaces this ends at the last.
constexpr KeySeries gnomeWorkspace(std::uint8_t number) {
  KeySeries series{{keys(kHoldSuper, XKB_KEY_Home)}};
  for (std::uint8_t i = 1; i < number; ++i) {
    series.strokes[i] = keys(kHoldSuper, XKB_KEY_Page_Down);
  }
  return series;
}

// xfwm4 may leave no window with the keys when it is given a hidden one and another was active there. Mutter
// and kwin do not, and i3 would make a window float for this.
constexpr DisplayAttempt whileShown(DisplayOperation operation) {
  return {operation, 0, true};
}

inline constexpr CommandRow kWorkspaceRows[] = {
    // Previous Workspace
    onX11(90, kAllButSway, DisplayAttempt{DisplayOperation::kPreviousWorkspace}),
    on(90, kOnPlasma, kwin("Switch to Previous Desktop")),
    on(90, kOnGnome, keys(kHoldSuper, XKB_KEY_Page_Up)),
    on(90, kOnXfce | kOnOther, keys(kHoldControl | kHoldAlt, XKB_KEY_Left)),
    on(90, kOnSway, CompositorAttempt{"workspace prev"}),
    // Next Workspace
    onX11(91, kAllButSway, DisplayAttempt{DisplayOperation::kNextWorkspace}),
    on(91, kOnPlasma, kwin("Switch to Next Desktop")),
    on(91, kOnGnome, keys(kHoldSuper, XKB_KEY_Page_Down)),
    on(91, kOnXfce | kOnOther, keys(kHoldControl | kHoldAlt, XKB_KEY_Right)),
    on(91, kOnSway, CompositorAttempt{"workspace next"}),
    // Move Window to the Previous Workspace
    onX11(92, kOnXfce, whileShown(DisplayOperation::kTakeToPreviousWorkspace)),
    onX11(92, kAllButSway & ~kOnXfce, DisplayAttempt{DisplayOperation::kTakeToPreviousWorkspace}),
    on(92, kOnPlasma, kwin("Window to Previous Desktop")),
    on(92, kOnGnome, keys(kHoldSuper | kHoldShift, XKB_KEY_Page_Up)),
    on(92, kOnXfce, keys(kHoldControl | kHoldAlt, XKB_KEY_Home)),
    on(92, kOnOther, keys(kHoldControl | kHoldAlt | kHoldShift, XKB_KEY_Left)),
    on(92, kOnSway, CompositorAttempt{"move container to workspace prev, workspace prev"}),
    // Move Window to the Next Workspace
    onX11(93, kOnXfce, whileShown(DisplayOperation::kTakeToNextWorkspace)),
    onX11(93, kAllButSway & ~kOnXfce, DisplayAttempt{DisplayOperation::kTakeToNextWorkspace}),
    on(93, kOnPlasma, kwin("Window to Next Desktop")),
    on(93, kOnGnome, keys(kHoldSuper | kHoldShift, XKB_KEY_Page_Down)),
    on(93, kOnXfce, keys(kHoldControl | kHoldAlt, XKB_KEY_End)),
    on(93, kOnOther, keys(kHoldControl | kHoldAlt | kHoldShift, XKB_KEY_Right)),
    on(93, kOnSway, CompositorAttempt{"move container to workspace next, workspace next"}),
    // Workspace 1
    onX11(94, kAllButSway, workspace(1)),
    on(94, kOnPlasma, kwin("Switch to Desktop 1")),
    on(94, kOnGnome, keys(kHoldSuper, XKB_KEY_Home)),
    on(94, kOnXfce, keys(kHoldControl, XKB_KEY_F1)),
    on(94, kOnSway, CompositorAttempt{"workspace number 1"}),
    // Workspace 2
    onX11(95, kAllButSway, workspace(2)),
    on(95, kOnPlasma, kwin("Switch to Desktop 2")),
    on(95, kOnGnome, gnomeWorkspace(2)),
    on(95, kOnXfce, keys(kHoldControl, XKB_KEY_F2)),
    on(95, kOnSway, CompositorAttempt{"workspace number 2"}),
    // Workspace 3
    onX11(96, kAllButSway, workspace(3)),
    on(96, kOnPlasma, kwin("Switch to Desktop 3")),
    on(96, kOnGnome, gnomeWorkspace(3)),
    on(96, kOnXfce, keys(kHoldControl, XKB_KEY_F3)),
    on(96, kOnSway, CompositorAttempt{"workspace number 3"}),
    // Workspace 4
    onX11(97, kAllButSway, workspace(4)),
    on(97, kOnPlasma, kwin("Switch to Desktop 4")),
    on(97, kOnGnome, gnomeWorkspace(4)),
    on(97, kOnXfce, keys(kHoldControl, XKB_KEY_F4)),
    on(97, kOnSway, CompositorAttempt{"workspace number 4"}),
    // Show Applications; Super+D is the menu of sway's own configuration, but of i3's only where its wizard
    // was told that Super is the modifier key
    on(100, kOnPlasma,
       sessionCall("org.kde.plasmashell", "/PlasmaShell", "org.kde.PlasmaShell", "activateLauncherMenu")),
    on(100, kOnGnome, keys(kHoldSuper, XKB_KEY_a)),
    on(100, kOnXfce, ProgramAttempt{{"xfce4-appfinder"}}),
    onX11(100, kOnSway, ProgramAttempt{{"i3-dmenu-desktop"}}),
    on(100, kOnSway, keys(kHoldSuper, XKB_KEY_d)),
    on(100, kOnPlasma | kOnXfce | kOnOther, keys(kHoldAlt, XKB_KEY_F1)),
    // Run a Command
    on(101, kOnPlasma, startingCall("org.kde.krunner", "/App", "org.kde.krunner.App", "display")),
    on(101, kAllButSway, keys(kHoldAlt, XKB_KEY_F2)),
    onX11(101, kOnSway, ProgramAttempt{{"dmenu_run"}}),
    on(101, kOnSway, keys(kHoldSuper, XKB_KEY_d)),
    // Show Desktop; GNOME has keys for it only where somebody has given it some
    onX11(102, kAllButSway, DisplayAttempt{DisplayOperation::kToggleShowDesktop}),
    on(102, kOnPlasma, kwin("Show Desktop")),
    on(102, kOnXfce, keys(kHoldControl | kHoldAlt, XKB_KEY_d)),
    on(102, kOnGnome, gnomeShortcut("show-desktop")),
    on(102, kOnOther, keys(kHoldSuper, XKB_KEY_d)),
    // Show Notifications; elsewhere the list belongs to a panel that takes no orders
    on(103, kOnGnome, keys(kHoldSuper, XKB_KEY_v)),
    onWayland(103, kOnSwayAndOther, ProgramAttempt{{"swaync-client", "--toggle-panel"}}),
    // Overview
    on(107, kOnPlasma, kwin("Overview")),
    on(107, kOnGnome, key(XKB_KEY_Super_L)),
    // Show All Windows
    on(136, kOnPlasma, kwin("Expose")),
    on(136, kOnGnome, key(XKB_KEY_Super_L)),
};

}  // namespace veltrix::table
