#include "helper/commands/command_table.h"

#include <algorithm>
#include <array>

#include "helper/commands/table_accessibility.h"
#include "helper/commands/table_opening.h"
#include "helper/commands/table_screen.h"
#include "helper/commands/table_session.h"
#include "helper/commands/table_sound.h"
#include "helper/commands/table_typing.h"
#include "helper/commands/table_windows.h"
#include "helper/commands/table_workspaces.h"

namespace veltrix {
namespace {

template <std::size_t... sizes>
constexpr std::array<CommandRow, (sizes + ...)> joined(const CommandRow (&... families)[sizes]) {
  std::array<CommandRow, (sizes + ...)> all{};
  auto next = all.begin();
  ((next = std::copy(std::begin(families), std::end(families), next)), ...);
  return all;
}

constexpr auto kTable =
    joined(table::kTypingRows, table::kEditingRows, table::kReadingRows, table::kWindowRows,
           table::kWorkspaceRows, table::kSoundRows, table::kScreenRows, table::kSessionRows,
           table::kOpeningRows, table::kAccessibilityRows);

struct DesktopName {
  std::string_view name;
  std::uint8_t desktop;
};
constexpr DesktopName kDesktopNames[] = {
    {"KDE", kOnPlasma}, {"GNOME", kOnGnome}, {"XFCE", kOnXfce}, {"sway", kOnSway}, {"i3", kOnSway},
};

constexpr char small(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

// Desktops write their names as they please.
bool sameName(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char left, char right) { return small(left) == small(right); });
}

std::uint8_t desktopOf(std::string_view names) {
  while (!names.empty()) {
    const std::string_view name = names.substr(0, names.find(':'));
    for (const DesktopName& known : kDesktopNames) {
      if (sameName(name, known.name)) {
        return known.desktop;
      }
    }
    names.remove_prefix(std::min(names.size(), name.size() + 1));
  }
  return kOnOther;
}

}  // namespace

SessionKind sessionKindOf(std::string_view currentDesktop, std::string_view waylandDisplay,
                          std::string_view xDisplay) {
  const DisplayKind display = !waylandDisplay.empty() ? DisplayKind::kWayland
                              : !xDisplay.empty()     ? DisplayKind::kX11
                                                      : DisplayKind::kNone;
  return {desktopOf(currentDesktop), display};
}

std::span<const CommandRow> commandTable() {
  return kTable;
}

std::span<const CommandRow> rowsOfCommand(std::uint16_t command) {
  const auto isOfCommand = [command](const CommandRow& row) { return row.command == command; };
  const auto first = std::find_if(kTable.begin(), kTable.end(), isOfCommand);
  return {first, std::find_if_not(first, kTable.end(), isOfCommand)};
}

bool isFor(const CommandRow& row, const SessionKind& session) {
  return (row.desktops & session.desktop) != 0 &&
         (row.displays == DisplayKind::kAny || row.displays == session.display);
}

}  // namespace veltrix
