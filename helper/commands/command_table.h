#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "helper/commands/attempt.h"

namespace veltrix {

// The desktops that the table tells apart; a bit each.
inline constexpr std::uint8_t kOnPlasma = 0x01;
inline constexpr std::uint8_t kOnGnome = 0x02;
inline constexpr std::uint8_t kOnXfce = 0x04;
inline constexpr std::uint8_t kOnSway = 0x08;
inline constexpr std::uint8_t kOnOther = 0x10;
inline constexpr std::uint8_t kOnEvery = 0x1F;

enum class DisplayKind : std::uint8_t { kNone = 0, kX11 = 1, kWayland = 2, kAny = 3 };

struct SessionKind {
  std::uint8_t desktop = kOnOther;  // one bit
  DisplayKind display = DisplayKind::kNone;
};

// From XDG_CURRENT_DESKTOP (names with colons between them, the first known one counts), WAYLAND_DISPLAY and
// DISPLAY; of both displays the Wayland one counts.
SessionKind sessionKindOf(std::string_view currentDesktop, std::string_view waylandDisplay,
                          std::string_view xDisplay);

// An attempt and where it is worth making.
struct CommandRow {
  std::uint16_t command;
  std::uint8_t desktops;  // kOn… bits
  DisplayKind displays;
  Attempt attempt;
};

// All rows, those of a command together and in the order in which they are tried.
std::span<const CommandRow> commandTable();

// The rows of one command; empty for a code that the helper does not carry out.
std::span<const CommandRow> rowsOfCommand(std::uint16_t command);

bool isFor(const CommandRow& row, const SessionKind& session);

}  // namespace veltrix
