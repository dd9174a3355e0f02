#include <gmock/gmock.h>

#include "tests/helper/desktop/launcher_fixture.h"

namespace veltrix {
namespace {

using ::testing::ElementsAre;

class LauncherPlaces : public testing::LauncherFixture {
 protected:
  void choose(const std::string& type, const std::string& program) {
    addProgram(program);
    addEntry(program, "Exec=" + program + " %u\n");
    testing::writeFile(home() + "/.config/mimeapps.list",
                       "[Default Applications]\n" + type + "=" + program + ".desktop\n");
  }
};

TEST_F(LauncherPlaces, BrowserMailAndFileManagerAreTheDefaultApplications) {
  const std::vector<std::pair<Place, std::string>> places = {{Place::kBrowser, "x-scheme-handler/https"},
                                                             {Place::kBrowser, "text/html"},
                                                             {Place::kMail, "x-scheme-handler/mailto"},
                                                             {Place::kFileManager, "inode/directory"}};
  for (const auto& [place, type] : places) {
    forgetRecords();
    choose(type, "chosen");
    EXPECT_TRUE(open(place)) << type;
    EXPECT_THAT(onlyRecord(), ElementsAre("chosen"));
  }
}

TEST_F(LauncherPlaces, PlaceWithoutAProgramIsReported) {
  EXPECT_EQ(reasonOf(open(Place::kBrowser)), "no web browser is installed");
  EXPECT_EQ(reasonOf(open(Place::kMail)), "no mail program is installed");
  EXPECT_EQ(reasonOf(open(Place::kFileManager)), "no file manager is installed");
  EXPECT_EQ(reasonOf(open(Place::kTerminal)), "no terminal is installed");
  EXPECT_EQ(reasonOf(open(Place::kCalculator)), "no calculator is installed");
  EXPECT_EQ(reasonOf(open(Place::kSystemSettings)), "no settings program of this desktop is installed");
  EXPECT_EQ(reasonOf(open(Place::kTrackballSettings)), "veltrix-settings is not installed");
}

TEST_F(LauncherPlaces, TerminalIsStartedWithoutArguments) {
  addProgram("gnome-terminal");
  EXPECT_TRUE(open(Place::kTerminal));
  EXPECT_THAT(onlyRecord(), ElementsAre("gnome-terminal"));
}

TEST_F(LauncherPlaces, CalculatorIsTheDesktopsByEntryOrByProgram) {
  addProgram("xcalc");
  EXPECT_TRUE(open(Place::kCalculator));
  EXPECT_THAT(onlyRecord(), ElementsAre("xcalc"));
  forgetRecords();
  addProgram("sums");
  addEntry("org.gnome.Calculator", "Exec=sums\n");
  EXPECT_TRUE(open(Place::kCalculator));
  EXPECT_THAT(onlyRecord(), ElementsAre("sums"));
}

TEST_F(LauncherPlaces, SystemSettingsAreTheDesktops) {
  addProgram("systemsettings");
  addProgram("gnome-control-center");
  addProgram("xfce4-settings-manager");
  const std::vector<std::pair<std::uint8_t, std::string>> desktops = {
      {kOnPlasma, "systemsettings"}, {kOnGnome, "gnome-control-center"}, {kOnXfce, "xfce4-settings-manager"}};
  for (const auto& [desktop, program] : desktops) {
    forgetRecords();
    makeLauncher(desktop);
    EXPECT_TRUE(open(Place::kSystemSettings));
    EXPECT_THAT(onlyRecord(), ElementsAre(program));
  }
  makeLauncher(kOnSway);
  EXPECT_FALSE(open(Place::kSystemSettings));
}

TEST_F(LauncherPlaces, FoldersAreOpenedWhereTheyAre) {
  addProgram("gio");
  EXPECT_TRUE(open(Place::kHome));
  EXPECT_THAT(onlyRecord(), ElementsAre("gio", "open", home()));
  forgetRecords();
  std::filesystem::create_directories(home() + "/Documents");
  EXPECT_TRUE(open(Place::kDocuments));
  EXPECT_THAT(onlyRecord(), ElementsAre("gio", "open", home() + "/Documents"));
  forgetRecords();
  std::filesystem::create_directories(home() + "/In");
  testing::writeFile(home() + "/.config/user-dirs.dirs", "XDG_DOWNLOAD_DIR=\"$HOME/In\"\n");
  EXPECT_TRUE(open(Place::kDownloads));
  EXPECT_THAT(onlyRecord(), ElementsAre("gio", "open", home() + "/In"));
}

TEST_F(LauncherPlaces, FolderThatIsMissingIsReported) {
  addProgram("gio");
  EXPECT_EQ(reasonOf(open(Place::kDownloads)),
            "cannot open " + home() + "/Downloads: No such file or directory");
}

TEST_F(LauncherPlaces, TrackballSettingsAreThoseInstalledWithTheHelper) {
  addProgram("veltrix-settings");  // in PATH, whose folder is the one below the same prefix
  std::filesystem::create_directories(fFolder / "lib/veltrix");
  writeScript("elsewhere/veltrix-settings", "echo wrong\n");
  const testing::ScopedEnvironment path("PATH", fFolder / "elsewhere");
  EXPECT_TRUE(open(Place::kTrackballSettings));
  EXPECT_THAT(onlyRecord(), ElementsAre("veltrix-settings"));
}

TEST_F(LauncherPlaces, TrackballSettingsAreFoundInPathOtherwise) {
  writeScript("elsewhere/veltrix-settings", "echo found\n");
  const testing::ScopedEnvironment path("PATH", fFolder / "elsewhere");
  EXPECT_TRUE(open(Place::kTrackballSettings));
  EXPECT_TRUE(runUntil([this] { return journalText() == "found\n"; }));
}

}  // namespace
}  // namespace veltrix
