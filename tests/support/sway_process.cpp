#include "tests/support/sway_process.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include "tests/support/wait_until.h"

namespace veltrix::testing {
namespace {

constexpr uid_t kNobody = 65534;

}  // namespace

SwayProcess::SwayProcess(const std::string& configuration, const EnvironmentChanges& environment) {
  writeFile(fFolder / "config", "xwayland disable\n" + configuration);
  if (getuid() == 0) {
    // It refuses to run as root.
    fAsUser = {"setpriv", "--reuid=65534", "--regid=65534", "--clear-groups"};
    EXPECT_EQ(chown(fFolder.path().c_str(), kNobody, kNobody), 0);
  }
  EnvironmentChanges changes = environment;
  changes.insert(
      {{"WAYLAND_DISPLAY", std::nullopt}, {"WLR_LIBINPUT_NO_DEVICES", "1"}, {"WLR_RENDERER", "pixman"}});
  fSway = start({"sway", "--config", fFolder / "config"}, changes);
  EXPECT_TRUE(waitUntil([&] { return message({"-t", "get_version"}).exitCode == 0; })) << output();
}

std::unique_ptr<ChildProcess> SwayProcess::startClient(const std::vector<std::string>& program) const {
  return start(program, {{"WAYLAND_DISPLAY", "wayland-1"}, {"DISPLAY", std::nullopt}});
}

ProgramRun SwayProcess::message(std::vector<std::string> arguments) const {
  arguments.insert(arguments.begin(), {"swaymsg", "--raw", "--socket", socket()});
  return runProgram(arguments, {});
}

std::unique_ptr<ChildProcess> SwayProcess::start(const std::vector<std::string>& program,
                                                 const EnvironmentChanges& environment) const {
  std::vector<std::string> words = fAsUser;
  words.insert(words.end(), program.begin(), program.end());
  EnvironmentChanges changes = environment;
  changes.insert({{"HOME", fFolder.path()}, {"XDG_RUNTIME_DIR", fFolder.path()}, {"SWAYSOCK", socket()}});
  return std::make_unique<ChildProcess>(words, changes);
}

}  // namespace veltrix::testing
