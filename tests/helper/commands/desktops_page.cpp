#include "tests/helper/commands/desktops_page.h"

#include <xkbcommon/xkbcommon.h>

#include <algorithm>
#include <sstream>

namespace veltrix::testing {
namespace {

std::string quoted(std::string_view text) {
  return '`' + std::string(text) + '`';
}

std::string nameOf(std::uint32_t keysym) {
  char name[64] = {};
  xkb_keysym_get_name(keysym, name, sizeof name);
  return name;
}

struct Words {
  std::string operator()(const KeyStroke& stroke) const {
    std::string text;
    text += (stroke.modifiers & kHoldControl) != 0 ? "Ctrl+" : "";
    text += (stroke.modifiers & kHoldAlt) != 0 ? "Alt+" : "";
    text += (stroke.modifiers & kHoldShift) != 0 ? "Shift+" : "";
    text += (stroke.modifiers & kHoldSuper) != 0 ? "Super+" : "";
    return text + nameOf(stroke.keysym);
  }
  std::string operator()(const KeySeries& series) const {
    std::string words;
    for (const KeyStroke& stroke : series.strokes) {
      words += stroke.keysym == 0 ? "" : (words.empty() ? "" : ", ") + (*this)(stroke);
    }
    return words;
  }
  std::string operator()(const DisplayAttempt& attempt) const {
    static const char* const kOperations[] = {"close",
                                              "minimize",
                                              "toggle maximized",
                                              "toggle above",
                                              "previous workspace",
                                              "next workspace",
                                              "take to previous workspace",
                                              "take to next workspace",
                                              "workspace",
                                              "toggle show desktop",
                                              "turn off screen"};
    const std::string words = kOperations[static_cast<std::size_t>(attempt.operation)];
    const std::string number = attempt.workspace != 0 ? ' ' + std::to_string(attempt.workspace) : "";
    const std::string stays = attempt.stays ? ", shown on all meanwhile" : "";
    return attempt.operation == DisplayOperation::kTurnOffScreen ? "DPMS off"
                                                                 : "EWMH " + words + number + stays;
  }
  std::string operator()(const CompositorAttempt& attempt) const { return "command " + quoted(attempt.text); }
  std::string operator()(const BusArgument& argument) const {
    std::ostringstream text;
    if (const auto* boolean = std::get_if<bool>(&argument)) {
      text << (*boolean ? "true" : "false");
    } else if (const auto* number = std::get_if<std::int32_t>(&argument)) {
      text << *number;
    } else if (const auto* size = std::get_if<std::uint32_t>(&argument)) {
      text << *size;
    } else if (const auto* string = std::get_if<const char*>(&argument)) {
      text << '"' << *string << '"';
    } else if (const auto* options = std::get_if<BusOptions>(&argument)) {
      text << '{' << options->key << ": " << (options->value ? "true" : "false") << '}';
    }
    return text.str();
  }
  std::string operator()(const BusAttempt& attempt) const {
    std::string arguments;
    for (const BusArgument& argument : attempt.arguments) {
      const std::string words = (*this)(argument);
      arguments += (arguments.empty() || words.empty() ? "" : ", ") + words;
    }
    return (attempt.bus == BusAttempt::Bus::kSystem ? "system bus " : "") +
           quoted(attempt.interface + std::string(".") + attempt.method + '(' + arguments + ')') + " of " +
           quoted(std::string(attempt.service) + attempt.path);
  }
  std::string operator()(const PlayerAttempt& attempt) const {
    const auto seconds = attempt.offset / 1'000'000;
    return "MPRIS " + quoted(attempt.offset == 0 ? attempt.method
                                                 : attempt.method + ('(' + std::to_string(seconds)) + " s)");
  }
  std::string operator()(const ProgramAttempt& attempt) const {
    std::string words;
    for (const char* argument : attempt.arguments) {
      words += argument == nullptr ? "" : (words.empty() ? "" : " ") + std::string(argument);
    }
    return quoted(words);
  }
  std::string operator()(const SettingAttempt& attempt) const {
    std::ostringstream step;
    if (attempt.step != 0) {
      step << " by " << attempt.step;
    }
    return "setting " + quoted(attempt.schema + std::string(" ") + attempt.key) + step.str();
  }
  std::string operator()(const PlaceAttempt&) const { return "what stands for it"; }
  std::string operator()(const ChosenAttempt&) const { return "what was chosen"; }
  std::string operator()(const ShortcutAttempt& attempt) const {
    return "keys of " + quoted(attempt.schema + std::string(" ") + attempt.key);
  }
  std::string operator()(const SnippetAttempt&) const { return "typed"; }
};

// The sessions that go the same way, by what they do; those that do nothing last.
std::vector<std::pair<std::string, std::string>> waysOf(std::uint16_t command) {
  std::vector<std::pair<std::string, std::string>> ways;
  for (const NamedSession& session : namedSessions()) {
    const std::string words = wordsFor(command, session.kind);
    const auto known =
        std::find_if(ways.begin(), ways.end(), [&](const auto& way) { return way.first == words; });
    if (known == ways.end()) {
      ways.emplace_back(words, session.name);
    } else {
      known->second += std::string(", ") + session.name;
    }
  }
  std::stable_partition(ways.begin(), ways.end(), [](const auto& way) { return !way.first.empty(); });
  return ways;
}

}  // namespace

const std::vector<NamedSession>& namedSessions() {
  static const std::vector<NamedSession> kSessions = {
      {"Plasma X11", {kOnPlasma, DisplayKind::kX11}}, {"Plasma Wayland", {kOnPlasma, DisplayKind::kWayland}},
      {"GNOME X11", {kOnGnome, DisplayKind::kX11}},   {"GNOME Wayland", {kOnGnome, DisplayKind::kWayland}},
      {"Xfce X11", {kOnXfce, DisplayKind::kX11}},     {"Xfce Wayland", {kOnXfce, DisplayKind::kWayland}},
      {"Sway", {kOnSway, DisplayKind::kWayland}},     {"i3", {kOnSway, DisplayKind::kX11}},
      {"other X11", {kOnOther, DisplayKind::kX11}},   {"other Wayland", {kOnOther, DisplayKind::kWayland}},
  };
  return kSessions;
}

std::string wordsFor(std::uint16_t command, const SessionKind& session) {
  std::string words;
  for (const CommandRow& row : rowsOfCommand(command)) {
    if (isFor(row, session)) {
      words += (words.empty() ? "" : ", then ") + std::visit(Words(), row.attempt);
    }
  }
  return words;
}

std::string desktopsTable(const std::vector<std::pair<std::uint16_t, std::string>>& commands) {
  std::string page = "| Code | Title | Where | How |\n|---|---|---|---|\n";
  for (const auto& [command, title] : commands) {
    const auto ways = waysOf(command);
    for (const auto& [words, sessions] : ways) {
      page += "| " + std::to_string(command) + " | " + title + " | " +
              (ways.size() == 1 ? "everywhere" : sessions) + " | " +
              (words.empty() ? "**no effect**" : words) + " |\n";
    }
  }
  return page;
}

}  // namespace veltrix::testing
