#include "helper/commands/command_table.h"

#include <gmock/gmock.h>

#include <cctype>
#include <fstream>
#include <set>
#include <sstream>

#include "tests/helper/commands/desktops_page.h"

namespace veltrix {
namespace {

using testing::namedSessions;
using testing::wordsFor;

constexpr SessionKind kPlasmaX11{kOnPlasma, DisplayKind::kX11};
constexpr SessionKind kPlasmaWayland{kOnPlasma, DisplayKind::kWayland};
constexpr SessionKind kGnomeX11{kOnGnome, DisplayKind::kX11};
constexpr SessionKind kGnomeWayland{kOnGnome, DisplayKind::kWayland};
constexpr SessionKind kXfce{kOnXfce, DisplayKind::kX11};
constexpr SessionKind kSway{kOnSway, DisplayKind::kWayland};
constexpr SessionKind kOtherX11{kOnOther, DisplayKind::kX11};
constexpr SessionKind kOtherWayland{kOnOther, DisplayKind::kWayland};

// Codes and titles that docs/commands.md gives to the helper, without the one that stands for another action.
std::vector<std::pair<std::uint16_t, std::string>> commandsOfTheHelper() {
  std::vector<std::pair<std::uint16_t, std::string>> commands;
  std::ifstream page(VELTRIX_DOCS "/commands.md");
  for (std::string line; std::getline(page, line);) {
    std::istringstream cells(line);
    std::string cell;
    std::vector<std::string> texts;
    while (std::getline(cells, cell, '|')) {
      const auto end = cell.find_last_not_of(' ');
      texts.push_back(end == std::string::npos ? "" : cell.substr(1, end));
    }
    if (texts.size() >= 5 && !texts[1].empty() && std::isdigit(texts[1].front()) != 0 &&
        texts[4] == "helper" && texts[1] != "200") {
      commands.emplace_back(static_cast<std::uint16_t>(std::stoi(texts[1])), texts[2]);
    }
  }
  return commands;
}

bool hasKind(const CommandRow& row, std::size_t kind) {
  return row.attempt.index() == kind;
}

bool typesKeys(const CommandRow& row) {
  return std::holds_alternative<KeyStroke>(row.attempt) || std::holds_alternative<KeySeries>(row.attempt);
}

TEST(CommandTable, HasRowsForExactlyTheCommandsOfTheHelper) {
  std::set<std::uint16_t> expected;
  for (const auto& [code, title] : commandsOfTheHelper()) {
    expected.insert(code);
  }
  ASSERT_GT(expected.size(), 100U);
  std::set<std::uint16_t> found;
  for (const CommandRow& row : commandTable()) {
    found.insert(row.command);
  }
  EXPECT_EQ(found, expected);
}

TEST(CommandTable, RowsOfACommandStandTogether) {
  std::set<std::uint16_t> done;
  std::uint16_t current = 0;
  for (const CommandRow& row : commandTable()) {
    if (row.command != current) {
      EXPECT_TRUE(done.insert(row.command).second) << row.command;
      current = row.command;
    }
  }
}

TEST(CommandTable, RowsOfACommandAreAllThatItHas) {
  std::size_t rows = 0;
  for (const auto& [code, title] : commandsOfTheHelper()) {
    const auto own = rowsOfCommand(code);
    rows += own.size();
    for (const CommandRow& row : own) {
      EXPECT_EQ(row.command, code);
    }
  }
  EXPECT_EQ(rows, commandTable().size());
}

TEST(CommandTable, CodesThatTheHelperDoesNotCarryOutHaveNoRows) {
  for (const std::uint16_t code : std::initializer_list<std::uint16_t>{0, 1, 9, 10, 20, 200, 0xFFFF}) {
    EXPECT_TRUE(rowsOfCommand(code).empty()) << code;
  }
}

// Keys can always be pressed, so whatever follows them would never be tried.
TEST(CommandTable, NoRowIsOutOfReach) {
  for (const CommandRow& row : commandTable()) {
    bool reached = false;
    for (const auto& session : namedSessions()) {
      const auto rows = rowsOfCommand(row.command);
      for (const CommandRow* at = rows.data(); at <= &row && isFor(row, session.kind); ++at) {
        if (at == &row) {
          reached = true;
        } else if (typesKeys(*at) && isFor(*at, session.kind)) {
          break;
        }
      }
    }
    EXPECT_TRUE(reached) << row.command << " row " << (&row - commandTable().data());
  }
}

TEST(CommandTable, NothingFollowsKeysInAnySession) {
  for (const auto& [code, title] : commandsOfTheHelper()) {
    for (const auto& session : namedSessions()) {
      bool typed = false;
      for (const CommandRow& row : rowsOfCommand(code)) {
        if (isFor(row, session.kind)) {
          EXPECT_FALSE(typed) << code << " on " << session.name;
          typed = typesKeys(row);
        }
      }
    }
  }
}

TEST(CommandTable, AskingTheWindowManagerIsForX11Alone) {
  constexpr std::size_t kDisplay = Attempt(DisplayAttempt{}).index();
  for (const CommandRow& row : commandTable()) {
    EXPECT_TRUE(!hasKind(row, kDisplay) || row.displays == DisplayKind::kX11) << row.command;
  }
}

TEST(CommandTable, CompositorIsAskedWhereItHasASocket) {
  constexpr std::size_t kCompositor = Attempt(CompositorAttempt{}).index();
  for (const CommandRow& row : commandTable()) {
    EXPECT_TRUE(!hasKind(row, kCompositor) || row.desktops == kOnSway) << row.command;
  }
}

TEST(CommandTable, NumbersInSettingsAreKeptInBounds) {
  for (const CommandRow& row : commandTable()) {
    if (const auto* setting = std::get_if<SettingAttempt>(&row.attempt);
        setting != nullptr && setting->step != 0) {
      EXPECT_LT(setting->least, setting->most) << row.command;
    }
  }
}

TEST(CommandTable, WindowsAreAskedOfTheWindowManagerFirstUnderX11) {
  EXPECT_EQ(wordsFor(74, kOtherX11), "EWMH close, then Alt+F4");
  EXPECT_EQ(wordsFor(74, kGnomeWayland), "Alt+F4");
  EXPECT_EQ(wordsFor(74, kSway), "command `kill`");
  EXPECT_EQ(wordsFor(76, kXfce), "EWMH toggle maximized, then Alt+F10");
  EXPECT_EQ(wordsFor(92, kGnomeX11), "EWMH take to previous workspace, then Shift+Super+Prior");
}

TEST(CommandTable, PlasmaDoesWhatItsShortcutsWouldDo) {
  EXPECT_EQ(wordsFor(75, kPlasmaWayland),
            "`org.kde.kglobalaccel.Component.invokeShortcut(\"Window Minimize\")` of "
            "`org.kde.kglobalaccel/component/kwin`");
  EXPECT_THAT(wordsFor(75, kPlasmaX11), ::testing::StartsWith("EWMH minimize, then `org.kde.kglobalaccel."));
}

TEST(CommandTable, DesktopWithoutAWayHasNoRow) {
  EXPECT_EQ(wordsFor(86, kOtherWayland), "");
  EXPECT_EQ(wordsFor(95, kOtherWayland), "");
  EXPECT_EQ(wordsFor(102, kSway), "");
  EXPECT_EQ(wordsFor(161, kOtherWayland), "");
  EXPECT_EQ(wordsFor(205, kXfce), "");
}

TEST(CommandTable, WorkspacesOfGnomeAreCountedFromTheFirst) {
  EXPECT_EQ(wordsFor(94, kGnomeWayland), "Super+Home");
  EXPECT_EQ(wordsFor(95, kGnomeWayland), "Super+Home, Super+Next");
  EXPECT_EQ(wordsFor(97, kGnomeWayland), "Super+Home, Super+Next, Super+Next, Super+Next");
}

TEST(CommandTable, WhatGnomeHasNoKeysForMayHaveSomeOfTheUsers) {
  EXPECT_EQ(wordsFor(102, kGnomeWayland), "keys of `org.gnome.desktop.wm.keybindings show-desktop`");
  EXPECT_THAT(wordsFor(86, kGnomeX11), ::testing::StartsWith("EWMH toggle above, then keys of "));
}

TEST(CommandTable, EditingIsTheSameEverywhere) {
  for (const auto& session : namedSessions()) {
    EXPECT_EQ(wordsFor(32, session.kind), "Ctrl+z");
    EXPECT_EQ(wordsFor(49, session.kind), "Ctrl+Shift+s");
    EXPECT_EQ(wordsFor(64, session.kind), "Ctrl+plus");
    EXPECT_EQ(wordsFor(110, session.kind), "Alt+Left");
  }
}

TEST(CommandTable, RestAsksForAPasswordWhereRulesWantOne) {
  for (const std::uint16_t code : std::initializer_list<std::uint16_t>{164, 165}) {
    const auto& call = std::get<BusAttempt>(rowsOfCommand(code)[0].attempt);
    EXPECT_TRUE(call.asksPerson);
    EXPECT_EQ(std::get<bool>(call.arguments[0]), true);
  }
}

TEST(CommandTable, WithoutADisplayOnlyWhatNeedsNoneRemains) {
  EXPECT_EQ(wordsFor(74, {kOnOther, DisplayKind::kNone}), "Alt+F4");
  EXPECT_EQ(wordsFor(161, {kOnOther, DisplayKind::kNone}), "");
}

TEST(SessionKind, FirstKnownDesktopCounts) {
  EXPECT_EQ(sessionKindOf("KDE", "", "").desktop, kOnPlasma);
  EXPECT_EQ(sessionKindOf("ubuntu:GNOME", "", "").desktop, kOnGnome);
  EXPECT_EQ(sessionKindOf("GNOME-Classic:GNOME", "", "").desktop, kOnGnome);
  EXPECT_EQ(sessionKindOf("XFCE:GNOME", "", "").desktop, kOnXfce);
  EXPECT_EQ(sessionKindOf("sway:wlroots", "", "").desktop, kOnSway);
  EXPECT_EQ(sessionKindOf("i3", "", "").desktop, kOnSway);
  EXPECT_EQ(sessionKindOf("xfce", "", "").desktop, kOnXfce);
}

TEST(SessionKind, UnknownDesktopIsAnother) {
  for (const char* names : {"", ":", "X-Cinnamon", "KD", "KDEX", "MATE:", "::LXQt"}) {
    EXPECT_EQ(sessionKindOf(names, "", "").desktop, kOnOther) << names;
  }
}

TEST(SessionKind, WaylandCountsBeforeX) {
  EXPECT_EQ(sessionKindOf("", "wayland-0", ":0").display, DisplayKind::kWayland);
  EXPECT_EQ(sessionKindOf("", "", ":0").display, DisplayKind::kX11);
  EXPECT_EQ(sessionKindOf("", "", "").display, DisplayKind::kNone);
}

std::string contentsOf(const char* path) {
  std::ifstream file(path);
  return {std::istreambuf_iterator<char>(file), {}};
}

// Every command on every desktop, held by the page that people read. VELTRIX_WRITE_PAGES=1 writes it anew.
TEST(DesktopsPage, SaysWhatTheTableDoes) {
  constexpr const char* kPath = VELTRIX_DOCS "/desktops.md";
  constexpr std::string_view kBegin = "<!-- table -->\n";
  const std::string page = contentsOf(kPath);
  const std::size_t begin = page.find(kBegin);
  ASSERT_NE(begin, std::string::npos);
  const std::string head = page.substr(0, begin + kBegin.size());
  const std::string table = testing::desktopsTable(commandsOfTheHelper());
  if (std::getenv("VELTRIX_WRITE_PAGES") != nullptr) {
    std::ofstream(kPath) << head << table;
  }
  EXPECT_EQ(contentsOf(kPath), head + table);
}

}  // namespace
}  // namespace veltrix
