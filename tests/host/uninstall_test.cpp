#include "host/uninstall.h"

#include <gmock/gmock.h>

#include <csignal>
#include <filesystem>

#include "helperlink/login_item.h"
#include "platform/bundle.h"
#include "platform/program_processes.h"
#include "tests/support/environment.h"
#include "tests/support/stubborn_process.h"
#include "tests/support/temporary_folder.h"

namespace veltrix {
namespace {

using namespace std::chrono_literals;
using testing::ChildProcess;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using testing::namesIn;
using testing::writeFile;

// An installation of programs that only sleep, in a folder of its own.
class Uninstall : public ::testing::Test {
 protected:
  Uninstall() {
    for (const std::string& program : {fHelper, fWindow}) {
      std::filesystem::create_directories(std::filesystem::path(program).parent_path());
      std::filesystem::copy_file("/bin/sleep", program);
    }
    plan.resourceFolder = fFolder / "lib/veltrix";
    plan.settingsPath = fSettings;
    plan.patience = 20s;
  }

  std::unique_ptr<ChildProcess> start(const std::string& program) {
    auto process = std::make_unique<ChildProcess>(std::vector<std::string>{program, "1000"});
    EXPECT_TRUE(testing::waitUntil([&] { return processesOfProgram(program).size() == 1; }));
    return process;
  }

  // Lets a program refuse to end.
  std::unique_ptr<ChildProcess> startStubborn(const std::string& program) {
    plan.patience = 50ms;
    return testing::startStubbornProcess(program, fFolder.path());
  }

  static std::vector<unsigned> counts(const std::vector<UninstallOutcome>& outcomes) {
    std::vector<unsigned> counts;
    counts.reserve(outcomes.size());
    for (const UninstallOutcome& outcome : outcomes) {
      counts.push_back(outcome.count);
    }
    return counts;
  }

  std::string sentence(const UninstallOutcome& outcome) const {
    return sentenceFor(outcome, plan, Bundle(fFolder / "lib/veltrix"));
  }

  testing::TemporaryFolder fFolder;
  std::string fHelper = fFolder / "lib/veltrix/VeltrixHelper.app/VeltrixHelper";
  std::string fWindow = fFolder / "bin/veltrix-settings";
  std::string fSettings = fFolder / "home/Library/Preferences/com.aldmoor.veltrix.settings.plist";
  testing::ScopedEnvironment fHome{"HOME", fFolder / "home"};
  testing::ScopedEnvironment fConfiguration{"XDG_CONFIG_HOME", std::nullopt};
  UninstallPlan plan;
};

TEST_F(Uninstall, ClosesTheWindowStopsTheHelperAndTakesTheLoginItem) {
  const auto helper = start(fHelper);
  const auto window = start(fWindow);
  ASSERT_EQ(AddLoginItem(fFolder / "lib/veltrix/VeltrixHelper.app", std::nullopt), 0);
  ASSERT_EQ(namesIn(fFolder / "home/.config/autostart").size(), 1U);
  writeFile(fSettings, "settings");
  const auto outcomes = uninstall(plan);
  EXPECT_TRUE(allDone(outcomes));
  EXPECT_THAT(counts(outcomes), ElementsAre(1, 1, 1, 0));
  EXPECT_EQ(helper->waitForExit(20s), 128 + SIGTERM);
  EXPECT_EQ(window->waitForExit(20s), 128 + SIGTERM);
  EXPECT_EQ(namesIn(fFolder / "home/.config/autostart").size(), 0U);
  EXPECT_TRUE(std::filesystem::exists(fSettings));
}

TEST_F(Uninstall, StopsEveryHelperOfThisInstallationAndNoOther) {
  const std::string other = fFolder / "other/VeltrixHelper";
  std::filesystem::create_directory(fFolder / "other");
  std::filesystem::copy_file("/bin/sleep", other);
  const auto foreign = start(other);
  const auto one = start(fHelper);
  ChildProcess two({fHelper, "1000"});
  ASSERT_TRUE(testing::waitUntil([&] { return processesOfProgram(fHelper).size() == 2; }));
  EXPECT_THAT(counts(uninstall(plan)), ElementsAre(0, 2, 0, 0));
  EXPECT_EQ(two.waitForExit(20s), 128 + SIGTERM);
  EXPECT_EQ(foreign->waitForExit(50ms), std::nullopt);
}

TEST_F(Uninstall, WithNothingThereNothingIsWrong) {
  plan.removeSettings = true;
  const auto outcomes = uninstall(plan);
  EXPECT_TRUE(allDone(outcomes));
  EXPECT_THAT(counts(outcomes), ElementsAre(0, 0, 0, 0));
  plan.settingsPath.clear();
  EXPECT_TRUE(allDone(uninstall(plan)));
}

TEST_F(Uninstall, SettingsGoWithTheirCopiesAndNothingElse) {
  const std::string folder = std::filesystem::path(fSettings).parent_path().string();
  for (const char* suffix :
       {"", ".rejected", ".rejected.2", ".before-import", ".before-import.11", ".mine", ".rejected-by-me"}) {
    writeFile(fSettings + suffix, "x");
  }
  writeFile(folder + "/other.plist", "x");
  plan.removeSettings = true;
  const auto outcomes = uninstall(plan);
  EXPECT_TRUE(allDone(outcomes));
  EXPECT_EQ(outcomes[3].count, 5U);
  EXPECT_THAT(namesIn(folder),
              ElementsAre("com.aldmoor.veltrix.settings.plist.mine",
                          "com.aldmoor.veltrix.settings.plist.rejected-by-me", "other.plist"));
}

TEST_F(Uninstall, HelperThatDoesNotStopIsReportedAndTheRestIsDone) {
  const auto helper = startStubborn(fHelper);
  writeFile(fSettings, "x");
  ASSERT_EQ(AddLoginItem(fFolder / "lib/veltrix/VeltrixHelper.app", std::nullopt), 0);
  plan.removeSettings = true;
  const auto outcomes = uninstall(plan);
  EXPECT_FALSE(allDone(outcomes));
  EXPECT_THAT(counts(outcomes), ElementsAre(0, 0, 1, 1));
  EXPECT_THAT(sentence(outcomes[1]), HasSubstr("The helper does not stop: cannot end process"));
}

TEST_F(Uninstall, SettingsThatAnOpenWindowWouldWriteAgainStay) {
  const auto window = startStubborn(fWindow);
  writeFile(fSettings, "x");
  plan.removeSettings = true;
  const auto outcomes = uninstall(plan);
  EXPECT_TRUE(std::filesystem::exists(fSettings));
  EXPECT_THAT(sentence(outcomes[0]), HasSubstr("The settings window does not close"));
  EXPECT_EQ(sentence(outcomes[3]), "Your settings could not be removed: the settings window is still open.");
}

TEST_F(Uninstall, SettingsThatCannotBeRemovedAreReported) {
  std::filesystem::create_directories(fSettings + "/in the way");
  plan.removeSettings = true;
  const auto outcomes = uninstall(plan);
  EXPECT_FALSE(allDone(outcomes));
  EXPECT_THAT(sentence(outcomes[3]), HasSubstr("Your settings could not be removed: " + fSettings));
}

TEST_F(Uninstall, SentencesTellDoneFromNothingToDo) {
  const auto pair = [this](UninstallStep step) {
    return sentence({step, 1, ""}) + " " + sentence({step, 0, ""});
  };
  plan.removeSettings = true;
  EXPECT_EQ(pair(UninstallStep::kWindow), "The settings window is closed. The settings window was not open.");
  EXPECT_EQ(pair(UninstallStep::kHelper), "The helper is stopped. The helper was not running.");
  EXPECT_EQ(
      pair(UninstallStep::kLoginItem),
      "The helper does not start with your session any more. The helper did not start with your session.");
  EXPECT_EQ(pair(UninstallStep::kSettings), "Your settings are removed. You had no settings.");
  plan.removeSettings = false;
  EXPECT_EQ(sentence({UninstallStep::kSettings, 0, ""}), "You had no settings.");
  writeFile(fSettings, "x");
  EXPECT_EQ(sentence({UninstallStep::kSettings, 0, ""}), "Your settings are kept: " + fSettings + ".");
}

TEST_F(Uninstall, StandardPlanIsOfThisUserAndKeepsSettings) {
  const UninstallPlan standard = standardUninstallPlan(Bundle("/opt/lib/veltrix"), false);
  EXPECT_EQ(standard.resourceFolder, "/opt/lib/veltrix");
  EXPECT_EQ(standard.settingsPath, fSettings);
  EXPECT_FALSE(standard.removeSettings);
}

}  // namespace
}  // namespace veltrix
