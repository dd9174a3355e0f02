#pragma once

#include "helper/commands/table_rows.h"

// The screen: its brightness and pictures of it.
namespace veltrix::table {

constexpr ProgramAttempt screenLight(const char* change) {
  return {{"brightnessctl", "--min-value=1", "set", change}};
}

constexpr ProgramAttempt keyboardLight(const char* change) {
  return {{"brightnessctl", "--device=*::kbd_backlight", "set", change}};
}

// The portal shows a dialog of the desktop's own, in which an area can be chosen too.
inline constexpr BusAttempt kPicturePortal =
    startingCall("org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop",
                 "org.freedesktop.portal.Screenshot", "Screenshot", {"", BusOptions{"interactive", true}});

inline constexpr CommandRow kScreenRows[] = {
    // Brighter Screen
    on(151, kOnSwayAndOther, screenLight("5%+")),
    on(151, kOnEvery, key(XKB_KEY_XF86MonBrightnessUp)),
    // Dimmer Screen
    on(152, kOnSwayAndOther, screenLight("5%-")),
    on(152, kOnEvery, key(XKB_KEY_XF86MonBrightnessDown)),
    // Brighter Keyboard
    on(153, kOnSwayAndOther, keyboardLight("10%+")),
    on(153, kOnEvery, key(XKB_KEY_XF86KbdBrightnessUp)),
    // Dimmer Keyboard
    on(154, kOnSwayAndOther, keyboardLight("10%-")),
    on(154, kOnEvery, key(XKB_KEY_XF86KbdBrightnessDown)),
    // Screenshot of the Screen; GNOME's Print alone opens a dialog
    on(155, kOnPlasma, ProgramAttempt{{"spectacle", "--background", "--fullscreen"}}),
    on(155, kOnGnome, keys(kHoldShift, XKB_KEY_Print)),
    on(155, kOnXfce, ProgramAttempt{{"xfce4-screenshooter", "--fullscreen"}}),
    onWayland(155, kOnSwayAndOther, ProgramAttempt{{"grimshot", "--notify", "save", "screen"}}),
    onWayland(155, kOnSwayAndOther, ProgramAttempt{{"grim"}}),
    onX11(155, kOnSwayAndOther, ProgramAttempt{{"gnome-screenshot"}}),
    onX11(155, kOnSwayAndOther, ProgramAttempt{{"scrot"}}),
    on(155, kOnEvery & ~kOnGnome, key(XKB_KEY_Print)),
    // Screenshot of the Window
    on(156, kOnPlasma, ProgramAttempt{{"spectacle", "--background", "--activewindow"}}),
    on(156, kOnXfce, ProgramAttempt{{"xfce4-screenshooter", "--window"}}),
    onWayland(156, kOnSwayAndOther, ProgramAttempt{{"grimshot", "--notify", "save", "active"}}),
    onX11(156, kOnSwayAndOther, ProgramAttempt{{"gnome-screenshot", "--window"}}),
    onX11(156, kOnSwayAndOther, ProgramAttempt{{"scrot", "--focused"}}),
    on(156, kOnEvery, keys(kHoldAlt, XKB_KEY_Print)),
    // Screenshot of an Area
    on(157, kOnPlasma, ProgramAttempt{{"spectacle", "--background", "--region"}}),
    on(157, kOnGnome, key(XKB_KEY_Print)),
    on(157, kOnXfce, ProgramAttempt{{"xfce4-screenshooter", "--region"}}),
    onWayland(157, kOnSwayAndOther, ProgramAttempt{{"grimshot", "--notify", "save", "area"}}),
    onX11(157, kOnSwayAndOther, ProgramAttempt{{"gnome-screenshot", "--area"}}),
    onX11(157, kOnSwayAndOther, ProgramAttempt{{"scrot", "--select"}}),
    on(157, kOnEvery & ~kOnGnome, kPicturePortal),
    on(157, kOnEvery & ~kOnGnome, keys(kHoldShift, XKB_KEY_Print)),
};

}  // namespace veltrix::table
