#pragma once

#include "helper/commands/table_rows.h"

// Windows. X's window managers share a protocol, which comes first there; Plasma does what its shortcuts
// would do; the others know their default keys. Sway and i3 have tiles where others have windows, and take
// what comes nearest.
namespace veltrix::table {

inline constexpr CommandRow kWindowRows[] = {
    // Close Window
    onX11(74, kAllButSway, DisplayAttempt{DisplayOperation::kClose}),
    on(74, kOnPlasma, kwin("Window Close")),
    on(74, kOnGnome | kOnXfce | kOnOther, keys(kHoldAlt, XKB_KEY_F4)),
    on(74, kOnSway, CompositorAttempt{"kill"}),
    // Minimize Window
    onX11(75, kAllButSway, DisplayAttempt{DisplayOperation::kMinimize}),
    on(75, kOnPlasma, kwin("Window Minimize")),
    on(75, kOnGnome, keys(kHoldSuper, XKB_KEY_h)),
    on(75, kOnXfce | kOnOther, keys(kHoldAlt, XKB_KEY_F9)),
    on(75, kOnSway, CompositorAttempt{"move scratchpad"}),
    // Maximize or Restore Window
    onX11(76, kAllButSway, DisplayAttempt{DisplayOperation::kToggleMaximized}),
    on(76, kOnPlasma, kwin("Window Maximize")),
    on(76, kOnGnome | kOnXfce | kOnOther, keys(kHoldAlt, XKB_KEY_F10)),
    on(76, kOnSway, CompositorAttempt{"fullscreen toggle"}),
    // Full Screen
    on(77, kAllButSway, key(XKB_KEY_F11)),
    on(77, kOnSway, CompositorAttempt{"fullscreen toggle"}),
    // Next Window; under GNOME these keys go by windows, Alt+Tab by applications
    on(78, kOnGnome, keys(kHoldAlt, XKB_KEY_Escape)),
    on(78, kOnPlasma | kOnXfce | kOnOther, keys(kHoldAlt, XKB_KEY_Tab)),
    on(78, kOnSway, CompositorAttempt{"focus next"}),
    // Previous Window
    on(79, kOnGnome, keys(kHoldAlt | kHoldShift, XKB_KEY_Escape)),
    on(79, kOnPlasma | kOnXfce | kOnOther, keys(kHoldAlt | kHoldShift, XKB_KEY_Tab)),
    on(79, kOnSway, CompositorAttempt{"focus prev"}),
    // Next Window of the Application
    on(80, kOnPlasma, kwin("Walk Through Windows of Current Application")),
    on(80, kOnGnome | kOnOther, keys(kHoldAlt, XKB_KEY_F6)),
    on(80, kOnXfce, keys(kHoldSuper, XKB_KEY_Tab)),
    // Window to the Left Half
    on(81, kOnPlasma, kwin("Window Quick Tile Left")),
    on(81, kOnGnome | kOnOther, keys(kHoldSuper, XKB_KEY_Left)),
    on(81, kOnXfce, keys(kHoldSuper, XKB_KEY_KP_Left)),
    on(81, kOnSway, CompositorAttempt{"move left"}),
    // Window to the Right Half
    on(82, kOnPlasma, kwin("Window Quick Tile Right")),
    on(82, kOnGnome | kOnOther, keys(kHoldSuper, XKB_KEY_Right)),
    on(82, kOnXfce, keys(kHoldSuper, XKB_KEY_KP_Right)),
    on(82, kOnSway, CompositorAttempt{"move right"}),
    // Move Window with the Ball
    on(83, kOnPlasma, kwin("Window Move")),
    on(83, kOnGnome | kOnXfce | kOnOther, keys(kHoldAlt, XKB_KEY_F7)),
    // Resize Window with the Ball
    on(84, kOnPlasma, kwin("Window Resize")),
    on(84, kOnGnome | kOnXfce | kOnOther, keys(kHoldAlt, XKB_KEY_F8)),
    // Window Menu
    on(85, kOnPlasma, kwin("Window Operations Menu")),
    on(85, kOnGnome | kOnXfce | kOnOther, keys(kHoldAlt, XKB_KEY_space)),
    // Keep Window on Top
    onX11(86, kAllButSway, DisplayAttempt{DisplayOperation::kToggleAbove}),
    on(86, kOnPlasma, kwin("Window Above Other Windows")),
    on(86, kOnGnome, gnomeShortcut("always-on-top")),
    on(86, kOnGnome, gnomeShortcut("toggle-above")),
    on(86, kOnXfce, keys(kHoldAlt, XKB_KEY_F12)),
    on(86, kOnSway, CompositorAttempt{"floating toggle"}),
};

}  // namespace veltrix::table
