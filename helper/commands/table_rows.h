#pragma once

#include <xkbcommon/xkbcommon-keysyms.h>

#include "helper/commands/command_table.h"

// How the rows of the table are written. For the families of the table alone.
namespace veltrix::table {

inline constexpr std::uint8_t kAllButSway = kOnEvery & ~kOnSway;
inline constexpr std::uint8_t kOnSwayAndOther = kOnSway | kOnOther;

constexpr CommandRow on(std::uint16_t command, std::uint8_t desktops, Attempt attempt) {
  return {command, desktops, DisplayKind::kAny, attempt};
}

constexpr CommandRow onX11(std::uint16_t command, std::uint8_t desktops, Attempt attempt) {
  return {command, desktops, DisplayKind::kX11, attempt};
}

constexpr CommandRow onWayland(std::uint16_t command, std::uint8_t desktops, Attempt attempt) {
  return {command, desktops, DisplayKind::kWayland, attempt};
}

constexpr KeyStroke keys(std::uint8_t modifiers, std::uint32_t keysym) {
  return {modifiers, keysym};
}
constexpr KeyStroke key(std::uint32_t keysym) {
  return {0, keysym};
}

constexpr BusAttempt sessionCall(const char* service, const char* path, const char* interface,
                                 const char* method,
                                 std::array<BusArgument, kMostBusArguments> arguments = {}) {
  return {BusAttempt::Bus::kSession, service, path, interface, method, arguments};
}

constexpr BusAttempt startingCall(const char* service, const char* path, const char* interface,
                                  const char* method,
                                  std::array<BusArgument, kMostBusArguments> arguments = {}) {
  BusAttempt attempt = sessionCall(service, path, interface, method, arguments);
  attempt.starts = true;
  return attempt;
}

constexpr BusAttempt systemCall(const char* service, const char* path, const char* interface,
                                const char* method,
                                std::array<BusArgument, kMostBusArguments> arguments = {}) {
  BusAttempt attempt = startingCall(service, path, interface, method, arguments);
  attempt.bus = BusAttempt::Bus::kSystem;
  return attempt;
}

// For what GNOME's window manager does but has no keys for by itself.
constexpr ShortcutAttempt gnomeShortcut(const char* key) {
  return {"org.gnome.desktop.wm.keybindings", key};
}

// What a global shortcut of the window manager would do, whatever keys it has and whether it has any.
constexpr BusAttempt kwin(const char* shortcut) {
  return sessionCall("org.kde.kglobalaccel", "/component/kwin", "org.kde.kglobalaccel.Component",
                     "invokeShortcut", {shortcut});
}

}  // namespace veltrix::table
