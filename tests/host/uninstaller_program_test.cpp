// The real uninstaller against a real helper and a real window, in a session of their own.
#include <gmock/gmock.h>

#include <filesystem>

#include "helperlink/login_item.h"
#include "platform/program_processes.h"
#include "tests/support/environment.h"
#include "tests/support/helper_process.h"
#include "tests/support/program_run.h"
#include "tests/support/wait_until.h"

namespace veltrix {
namespace {

using namespace std::chrono_literals;
using testing::ChildProcess;
using testing::EnvironmentChanges;
using ::testing::HasSubstr;
using testing::namesIn;
using testing::ProgramRun;

class UninstallerProgram : public ::testing::Test {
 protected:
  UninstallerProgram() {
    const std::string settings = fSession.settingsPath();
    fHome = settings.substr(0, settings.find("/Library/"));
  }

  EnvironmentChanges environment() {
    return {{"HOME", fHome},
            {"XDG_CONFIG_HOME", std::nullopt},
            {"DBUS_SESSION_BUS_ADDRESS", fSession.bus().address()},
            {"LANGUAGE", std::nullopt},
            {"LC_ALL", "C"}};
  }

  ProgramRun run(const std::vector<std::string>& options) {
    std::vector<std::string> arguments = {UNINSTALLER};
    arguments.insert(arguments.end(), options.begin(), options.end());
    return testing::runProgram(arguments, environment());
  }

  std::string autostart() const { return fHome + "/.config/autostart"; }

  testing::HelperSession fSession;
  std::string fHome;
};

TEST_F(UninstallerProgram, StopsARealHelperAndTakesItsLoginItem) {
  fSession.startHelper({"--simulate", "A1D0:1020:0100"});
  {
    const testing::ScopedEnvironment home("HOME", fHome);
    const testing::ScopedEnvironment configuration("XDG_CONFIG_HOME", std::nullopt);
    ASSERT_EQ(
        AddLoginItem(std::string(std::getenv("VELTRIX_RESOURCES")) + "/VeltrixHelper.app", std::nullopt), 0);
  }
  ASSERT_EQ(namesIn(autostart()).size(), 1U);
  testing::writeFile(fSession.settingsPath(), "settings");
  const ProgramRun done = run({"--yes"});
  EXPECT_EQ(done.exitCode, 0) << done.errors;
  EXPECT_EQ(done.errors, "");
  EXPECT_EQ(done.output,
            "The settings window was not open.\n"
            "The helper is stopped.\n"
            "The helper does not start with your session any more.\n"
            "Your settings are kept: " +
                fSession.settingsPath() +
                ".\n"
                "To remove the programs themselves, type this in a terminal:\n"
                "  sudo apt remove veltrix\n");
  EXPECT_EQ(fSession.helper().waitForExit(20s), 0);
  EXPECT_EQ(namesIn(autostart()).size(), 0U);
  EXPECT_EQ(testing::readFile(fSession.settingsPath()), "settings");
}

TEST_F(UninstallerProgram, SettingsStayRemovedThoughTheWindowWritesThemWhenItCloses) {
  auto changes = environment();
  changes["QT_QPA_PLATFORM"] = "offscreen";
  ChildProcess window({SETTINGS_PROGRAM}, changes);
  // The window puts its helper among the login items and starts it when none is found.
  ASSERT_TRUE(testing::waitUntil([&] { return std::filesystem::exists(autostart()); })) << window.output();
  ASSERT_TRUE(testing::waitUntil([&] { return std::filesystem::exists(fSession.settingsPath()); }));
  const ProgramRun done = run({"--yes", "--remove-settings"});
  EXPECT_EQ(done.exitCode, 0) << done.errors;
  EXPECT_THAT(done.output, HasSubstr("The settings window is closed.\n"));
  EXPECT_THAT(done.output, HasSubstr("Your settings are removed.\n"));
  EXPECT_EQ(window.waitForExit(20s), 0);
  EXPECT_FALSE(std::filesystem::exists(fSession.settingsPath()));
  EXPECT_EQ(namesIn(autostart()).size(), 0U);
}

TEST_F(UninstallerProgram, SpeaksTheUsersLanguage) {
  auto changes = environment();
  changes["LC_ALL"] = "C.UTF-8";
  changes["LANGUAGE"] = "de";
  const ProgramRun done = testing::runProgram({UNINSTALLER, "--yes"}, changes);
  EXPECT_THAT(done.output, HasSubstr("Das Einstellungsfenster war nicht offen.\n"));
}

TEST_F(UninstallerProgram, RefusesWordsThatMeanNothing) {
  fSession.startHelper({});
  const ProgramRun refused = run({"--yes", "--everything"});
  EXPECT_EQ(refused.exitCode, 2);
  EXPECT_THAT(refused.errors, HasSubstr("\"--everything\" means nothing here"));
  EXPECT_EQ(fSession.helper().waitForExit(50ms), std::nullopt);
}

TEST_F(UninstallerProgram, DoesNothingWithoutADisplayToAskOn) {
  auto changes = environment();
  for (const char* variable : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) {
    changes[variable] = std::nullopt;
  }
  const ProgramRun refused = testing::runProgram({UNINSTALLER}, changes);
  EXPECT_EQ(refused.exitCode, 2);
  EXPECT_THAT(refused.errors, HasSubstr("nothing was done"));
}

TEST_F(UninstallerProgram, HelpDoesNothing) {
  const ProgramRun help = run({"--yes", "--help"});
  EXPECT_EQ(help.exitCode, 0);
  EXPECT_THAT(help.output, HasSubstr("--remove-settings"));
}

}  // namespace
}  // namespace veltrix
