#pragma once

#include <gmock/gmock.h>

#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/program_run.h"
#include "tests/support/property_list_files.h"
#include "tests/support/settings_documents.h"
#include "tests/support/temporary_folder.h"

namespace veltrix::testing {

// Runs the real veltrixctl in a home of its own, without a session bus unless a test gives it one.
class CtlTest : public ::testing::Test {
 protected:
  ProgramRun ctl(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), VELTRIXCTL);
    EnvironmentChanges environment = {{"HOME", fHome},
                                      {"DBUS_SESSION_BUS_ADDRESS", fBusAddress},
                                      {"XDG_RUNTIME_DIR", fFolder / "runtime"},
                                      {"DISPLAY", ""},
                                      {"WAYLAND_DISPLAY", ""},
                                      {"XKB_DEFAULT_LAYOUT", fLayout}};
    fLast = runProgram(arguments, environment);
    return fLast;
  }

  void expect(const std::vector<std::string>& arguments, int exitCode, const std::string& output,
              const ::testing::Matcher<std::string>& errors) {
    const auto run = ctl(arguments);
    EXPECT_EQ(run.exitCode, exitCode) << run.errors;
    EXPECT_EQ(run.output, output);
    EXPECT_THAT(run.errors, errors);
  }

  void expectDone(const std::vector<std::string>& arguments, const std::string& output) {
    expect(arguments, 0, output, "");
  }

  nlohmann::json json(const std::vector<std::string>& arguments) {
    const auto run = ctl(arguments);
    auto parsed = nlohmann::json::parse(run.output, nullptr, false);
    EXPECT_FALSE(parsed.is_discarded()) << run.output << run.errors;
    return parsed;
  }

  // An entry of a model with a speed of its own and one button.
  static plist::Dictionary entryOfSpeed(int product, int speed, int versionMin = 0, int versionMax = 0) {
    auto entry = entryOf(0xA1D0, product, versionMin, versionMax);
    entry.set("options", dictionaryOf({{"speed", speed}, {"accelerate", true}, {"acceleration", 1.5}}));
    entry.set("buttons", dictionaryOf({{"00", clickOf(1, 0)}}));
    return entry;
  }

  static plist::Dictionary entryIn(const plist::Dictionary& document, std::size_t index) {
    return document.arrayFor("devices").at(index).asDictionary();
  }

  // A command that complains and leaves the user's file as it is.
  void expectUnchanged(const std::vector<std::string>& arguments, int exitCode,
                       const ::testing::Matcher<std::string>& errors) {
    const auto before = readFile(fSettings);
    expect(arguments, exitCode, "", errors);
    EXPECT_EQ(readFile(fSettings), before);
  }

  TemporaryFolder fFolder;
  std::string fHome = fFolder / "home";
  std::string fBusAddress = "unix:path=" + (fFolder / "no-bus");
  std::string fSettings = fHome + "/Library/Preferences/com.aldmoor.veltrix.settings.plist";
  std::string fLayout = "us";  // of a session without a display
  ProgramRun fLast;
};

}  // namespace veltrix::testing
