#include <gmock/gmock.h>

#include <algorithm>

#include "tests/helper/desktop/launcher_fixture.h"
#include "tests/support/child_process.h"
#include "tests/support/program_run.h"
#include "tests/support/x_server.h"

// What the launcher starts reaches the screen: a real application shows its window.
namespace veltrix {
namespace {

using testing::ScopedEnvironment;

class LauncherDisplay : public testing::LauncherFixture {
 protected:
  LauncherDisplay() { chmod((fFolder / "runtime").c_str(), 0700); }

  // Starts it in each of the ways that lead to one.
  void launchInEveryWay(const std::string& program) {
    addEntry("org.example.Window", "Name=A Window\nExec=" + program + "\n");
    EXPECT_TRUE(launch("org.example.Window", ""));
    EXPECT_TRUE(launch("", "A Window"));
    EXPECT_TRUE(openItem(fFolder / "data/applications/org.example.Window.desktop"));
    EXPECT_TRUE(runScript("exec " + program));
  }

 private:
  ScopedEnvironment fPath{"PATH", "/usr/bin:/bin"};
  ScopedEnvironment fDataFolders{"XDG_DATA_DIRS", "/usr/share"};
};

std::size_t linesIn(const std::string& text) {
  return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
}

TEST_F(LauncherDisplay, WindowsComeUpUnderX11) {
  const testing::XServer server;
  const ScopedEnvironment display("DISPLAY", server.display());
  const ScopedEnvironment wayland("WAYLAND_DISPLAY", std::nullopt);
  launchInEveryWay("xev");
  EXPECT_TRUE(runUntil([] {
    return linesIn(testing::runProgram({"xdotool", "search", "--name", "Event Tester"}, {}).output) >= 4;
  }));
}

TEST_F(LauncherDisplay, WindowsComeUpUnderWayland) {
  // The compositor notes what its clients ask for.
  const std::string log = fFolder / "compositor.log";
  const testing::ChildProcess compositor({"weston", "--backend=headless-backend.so", "--shell=kiosk-shell.so",
                                          "--no-config", "--socket=veltrix-test", "--log=" + log,
                                          "--logger-scopes=proto"});
  ASSERT_TRUE(runUntil([this] { return std::filesystem::exists(fFolder / "runtime/veltrix-test"); }))
      << compositor.output();
  const ScopedEnvironment display("DISPLAY", std::nullopt);
  const ScopedEnvironment wayland("WAYLAND_DISPLAY", "veltrix-test");
  launchInEveryWay("weston-flower");
  EXPECT_TRUE(runUntil([&log] {
    const std::string text = testing::readFile(log);
    std::size_t windows = 0;
    for (std::size_t at = 0; (at = text.find("set_title(\"Flower\")", at)) != std::string::npos; ++at) {
      ++windows;
    }
    return windows >= 4;
  })) << compositor.output();
}

}  // namespace
}  // namespace veltrix
