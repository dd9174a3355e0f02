#include "helper/desktop/place_table.h"

#include <array>

#include "helper/commands/command_table.h"
#include "platform/detached_program.h"

namespace veltrix {

namespace {

constexpr std::array kPlaces = {
    PlaceProgram{Place::kCalculator, kOnPlasma, "org.kde.kcalc.desktop"},
    PlaceProgram{Place::kCalculator, kOnGnome, "org.gnome.Calculator.desktop"},
    PlaceProgram{Place::kCalculator, kOnXfce, "galculator"},
    PlaceProgram{Place::kCalculator, kOnXfce, "mate-calc"},
    PlaceProgram{Place::kCalculator, kOnEvery, "qalculate-gtk"},
    PlaceProgram{Place::kCalculator, kOnEvery, "qalculate-qt"},
    PlaceProgram{Place::kCalculator, kOnEvery, "org.gnome.Calculator.desktop"},
    PlaceProgram{Place::kCalculator, kOnEvery, "org.kde.kcalc.desktop"},
    PlaceProgram{Place::kCalculator, kOnEvery, "galculator"},
    PlaceProgram{Place::kCalculator, kOnEvery, "mate-calc"},
    PlaceProgram{Place::kCalculator, kOnEvery, "speedcrunch"},
    PlaceProgram{Place::kCalculator, kOnEvery, "xcalc"},
    PlaceProgram{Place::kSystemSettings, kOnPlasma, "systemsettings"},
    PlaceProgram{Place::kSystemSettings, kOnPlasma, "systemsettings5"},
    PlaceProgram{Place::kSystemSettings, kOnGnome, "gnome-control-center"},
    PlaceProgram{Place::kSystemSettings, kOnXfce, "xfce4-settings-manager"},
};

constexpr std::array kTerminals = {
    TerminalProgram{kOnEvery, "xdg-terminal-exec", nullptr},
    TerminalProgram{kOnPlasma, "konsole", "-e"},
    TerminalProgram{kOnGnome, "gnome-terminal", "--"},
    TerminalProgram{kOnGnome, "ptyxis", "--"},
    TerminalProgram{kOnGnome, "kgx", "--"},
    TerminalProgram{kOnXfce, "xfce4-terminal", "-x"},
    TerminalProgram{kOnSway, "foot", nullptr},
    TerminalProgram{kOnEvery, "x-terminal-emulator", "-e"},
    TerminalProgram{kOnEvery, "konsole", "-e"},
    TerminalProgram{kOnEvery, "gnome-terminal", "--"},
    TerminalProgram{kOnEvery, "xfce4-terminal", "-x"},
    TerminalProgram{kOnEvery, "foot", nullptr},
    TerminalProgram{kOnEvery, "alacritty", "-e"},
    TerminalProgram{kOnEvery, "xterm", "-e"},
};

}  // namespace

std::span<const PlaceProgram> placePrograms() {
  return kPlaces;
}

std::span<const TerminalProgram> terminalPrograms() {
  return kTerminals;
}

std::vector<std::string> terminalArguments(std::uint8_t desktop, const std::vector<std::string>& program) {
  for (const TerminalProgram& terminal : kTerminals) {
    const std::string path =
        (terminal.desktops & desktop) != 0 ? programInPath(terminal.program) : std::string();
    if (path.empty()) {
      continue;
    }
    std::vector<std::string> arguments{path};
    if (!program.empty() && terminal.runOption != nullptr) {
      arguments.emplace_back(terminal.runOption);
    }
    arguments.insert(arguments.end(), program.begin(), program.end());
    return arguments;
  }
  return {};
}

}  // namespace veltrix
