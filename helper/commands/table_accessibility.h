#pragma once

#include "helper/commands/table_rows.h"

// Accessibility. GNOME and Cinnamon have switches in their settings, Plasma has its window manager; a setting
// whose schema is not installed fails, so Cinnamon's rows harm nobody else.
namespace veltrix::table {

constexpr SettingAttempt gnomeSwitch(const char* key) {
  return {"org.gnome.desktop.a11y.applications", key};
}
constexpr SettingAttempt cinnamonSwitch(const char* key) {
  return {"org.cinnamon.desktop.a11y.applications", key};
}

// A factor below 1 would make everything smaller.
constexpr SettingAttempt magnify(const char* schema, double step) {
  return {schema, "mag-factor", step, 1, 20};
}

inline constexpr CommandRow kAccessibilityRows[] = {
    // On-Screen Keyboard
    on(201, kOnGnome, gnomeSwitch("screen-keyboard-enabled")),
    onWayland(
        201, kOnPlasma,
        sessionCall("org.kde.KWin", "/VirtualKeyboard", "org.kde.kwin.VirtualKeyboard", "forceActivate")),
    on(201, kOnOther, cinnamonSwitch("screen-keyboard-enabled")),
    onX11(201, kOnPlasma | kOnXfce | kOnOther,
          sessionCall("org.onboard.Onboard", "/org/onboard/Onboard/Keyboard", "org.onboard.Onboard.Keyboard",
                      "ToggleVisible")),
    onX11(201, kOnPlasma | kOnXfce | kOnOther, ProgramAttempt{{"onboard"}}),
    // Screen Reader
    on(202, kOnGnome, gnomeSwitch("screen-reader-enabled")),
    on(202, kOnPlasma | kOnOther, keys(kHoldSuper | kHoldAlt, XKB_KEY_s)),
    on(202, kOnXfce | kOnSway, ProgramAttempt{{"orca"}}),
    // Magnify the Screen
    on(203, kOnPlasma, kwin("view_zoom_in")),
    on(203, kOnGnome, magnify("org.gnome.desktop.a11y.magnifier", 0.5)),
    on(203, kOnOther, magnify("org.cinnamon.desktop.a11y.magnifier", 0.5)),
    // Magnify the Screen Less
    on(204, kOnPlasma, kwin("view_zoom_out")),
    on(204, kOnGnome, magnify("org.gnome.desktop.a11y.magnifier", -0.5)),
    on(204, kOnOther, magnify("org.cinnamon.desktop.a11y.magnifier", -0.5)),
    // Magnifier On or Off; Plasma's is on as soon as it magnifies
    on(205, kOnPlasma, kwin("view_actual_size")),
    on(205, kOnGnome, gnomeSwitch("screen-magnifier-enabled")),
    on(205, kOnOther, cinnamonSwitch("screen-magnifier-enabled")),
};

}  // namespace veltrix::table
