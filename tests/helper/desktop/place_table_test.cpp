#include "helper/desktop/place_table.h"

#include <gmock/gmock.h>

#include "helper/commands/command_table.h"
#include "tests/helper/desktop/desktop_fixture.h"

namespace veltrix {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class PlaceTable : public testing::DesktopFixture {
 protected:
  std::vector<std::string> terminal(std::uint8_t desktop) const {
    std::vector<std::string> arguments = terminalArguments(desktop, {"top", "-d"});
    if (!arguments.empty()) {
      arguments.front() = arguments.front().substr(arguments.front().rfind('/') + 1);
    }
    return arguments;
  }
};

TEST_F(PlaceTable, TerminalIsTheDesktopsOwn) {
  for (const char* name : {"konsole", "gnome-terminal", "xfce4-terminal", "foot", "xterm"}) {
    addProgram(name);
  }
  addProgram("x-terminal-emulator");
  EXPECT_THAT(terminal(kOnPlasma), ElementsAre("konsole", "-e", "top", "-d"));
  EXPECT_THAT(terminal(kOnGnome), ElementsAre("gnome-terminal", "--", "top", "-d"));
  EXPECT_THAT(terminal(kOnXfce), ElementsAre("xfce4-terminal", "-x", "top", "-d"));
  EXPECT_THAT(terminal(kOnSway), ElementsAre("foot", "top", "-d"));
  EXPECT_THAT(terminal(kOnOther), ElementsAre("x-terminal-emulator", "-e", "top", "-d"));
}

TEST_F(PlaceTable, TerminalThatTheUserHasChosenComesFirst) {
  addProgram("konsole");
  addProgram("xdg-terminal-exec");
  EXPECT_THAT(terminal(kOnPlasma), ElementsAre("xdg-terminal-exec", "top", "-d"));
}

TEST_F(PlaceTable, AnotherTerminalServesWhereTheDesktopsIsMissing) {
  EXPECT_THAT(terminal(kOnGnome), IsEmpty());
  addProgram("xterm");
  EXPECT_THAT(terminal(kOnGnome), ElementsAre("xterm", "-e", "top", "-d"));
}

TEST_F(PlaceTable, TerminalAloneGetsNoOption) {
  addProgram("xterm");
  EXPECT_THAT(terminalArguments(kOnOther, {}), ElementsAre(fFolder / "bin/xterm"));
}

TEST_F(PlaceTable, EveryDesktopHasCalculatorsAndTheThreeWithSettingsHaveThose) {
  for (const std::uint8_t desktop : {kOnPlasma, kOnGnome, kOnXfce, kOnSway, kOnOther}) {
    int calculators = 0;
    int settings = 0;
    for (const PlaceProgram& row : placePrograms()) {
      const bool fits = (row.desktops & desktop) != 0;
      calculators += fits && row.place == Place::kCalculator ? 1 : 0;
      settings += fits && row.place == Place::kSystemSettings ? 1 : 0;
    }
    EXPECT_GT(calculators, 0);
    EXPECT_EQ(settings > 0, desktop == kOnPlasma || desktop == kOnGnome || desktop == kOnXfce);
  }
}

}  // namespace
}  // namespace veltrix
