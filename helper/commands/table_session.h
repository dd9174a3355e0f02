#pragma once

#include "helper/commands/table_rows.h"

// Locking, leaving and resting. Nothing here ends a session or a machine without a question of the desktop's.
namespace veltrix::table {

inline constexpr BusAttempt kLockSession =
    systemCall("org.freedesktop.login1", "/org/freedesktop/login1/session/auto",
               "org.freedesktop.login1.Session", "Lock");

// logind asks for a password itself where rules want one.
constexpr BusAttempt rest(const char* method) {
  BusAttempt attempt = systemCall("org.freedesktop.login1", "/org/freedesktop/login1",
                                  "org.freedesktop.login1.Manager", method, {true});
  attempt.asksPerson = true;
  return attempt;
}

constexpr BusAttempt plasmaQuestion(const char* method) {
  return startingCall("org.kde.LogoutPrompt", "/LogoutPrompt", "org.kde.LogoutPrompt", method);
}

// GNOME's session manager, whose name and methods those of Cinnamon and MATE have too.
constexpr BusAttempt sessionManager(const char* method,
                                    std::array<BusArgument, kMostBusArguments> arguments = {}) {
  return sessionCall("org.gnome.SessionManager", "/org/gnome/SessionManager", "org.gnome.SessionManager",
                     method, arguments);
}

// It answers these when the person has answered its question.
constexpr BusAttempt sessionManagerQuestion(const char* method) {
  BusAttempt attempt = sessionManager(method);
  attempt.answersLate = true;
  return attempt;
}

inline constexpr ProgramAttempt kXfceQuestion{{"xfce4-session-logout"}};

inline constexpr CommandRow kSessionRows[] = {
    // Lock Screen. logind only passes the wish on; where a desktop may have nobody who listens, whoever locks
    // is
    // asked itself.
    on(160, kOnXfce, ProgramAttempt{{"xflock4"}}),
    onWayland(160, kOnSway, ProgramAttempt{{"swaylock", "--daemonize"}}),
    onX11(160, kOnSway, ProgramAttempt{{"i3lock"}}),
    on(160, kOnOther,
       sessionCall("org.cinnamon.ScreenSaver", "/org/cinnamon/ScreenSaver", "org.cinnamon.ScreenSaver",
                   "Lock", {""})),
    on(160, kOnOther,
       sessionCall("org.mate.ScreenSaver", "/org/mate/ScreenSaver", "org.mate.ScreenSaver", "Lock")),
    on(160, kOnEvery, kLockSession),
    // Turn Off Screen. No input wakes sway's screens, hence the toggle.
    onX11(161, kOnEvery, DisplayAttempt{DisplayOperation::kTurnOffScreen}),
    on(161, kOnPlasma,
       sessionCall("org.kde.kglobalaccel", "/component/org_kde_powerdevil", "org.kde.kglobalaccel.Component",
                   "invokeShortcut", {"Turn Off Screen"})),
    on(161, kOnGnome,
       sessionCall("org.gnome.ScreenSaver", "/org/gnome/ScreenSaver", "org.gnome.ScreenSaver", "SetActive",
                   {true})),
    onWayland(161, kOnSway, CompositorAttempt{"output - dpms toggle"}),
    // Switch User: a matter of the display manager, not of the desktop
    on(162, kOnEvery,
       systemCall("org.freedesktop.DisplayManager", "/org/freedesktop/DisplayManager/Seat0",
                  "org.freedesktop.DisplayManager.Seat", "SwitchToGreeter")),
    on(162, kOnEvery,
       systemCall("org.gnome.DisplayManager", "/org/gnome/DisplayManager/LocalDisplayFactory",
                  "org.gnome.DisplayManager.LocalDisplayFactory", "CreateTransientDisplay")),
    // Log Out; the keys ask in sway's and i3's own configuration
    on(163, kOnPlasma, plasmaQuestion("promptLogout")),
    on(163, kOnXfce, kXfceQuestion),
    on(163, kOnGnome | kOnOther, sessionManager("Logout", {std::uint32_t{0}})),
    on(163, kOnOther, ProgramAttempt{{"lxqt-leave", "--logout"}}),
    on(163, kOnSway, keys(kHoldSuper | kHoldShift, XKB_KEY_e)),
    // Suspend
    on(164, kOnEvery, rest("Suspend")),
    // Hibernate
    on(165, kOnEvery, rest("Hibernate")),
    // Restart
    on(166, kOnPlasma, plasmaQuestion("promptReboot")),
    on(166, kOnXfce, kXfceQuestion),
    on(166, kOnGnome | kOnOther, sessionManagerQuestion("Reboot")),
    on(166, kOnOther, ProgramAttempt{{"lxqt-leave", "--reboot"}}),
    // Shut Down
    on(167, kOnPlasma, plasmaQuestion("promptShutDown")),
    on(167, kOnXfce, kXfceQuestion),
    on(167, kOnGnome | kOnOther, sessionManagerQuestion("Shutdown")),
    on(167, kOnOther, ProgramAttempt{{"lxqt-leave", "--shutdown"}}),
};

}  // namespace veltrix::table
