#include "pane/pane_services.h"

#include <gtest/gtest.h>

#include "pane/links.h"
#include "tests/support/environment.h"
#include "tests/support/program_answer.h"

namespace veltrix {
namespace {

class StandardPaneServices : public ::testing::Test {
 protected:
  testing::TemporaryFolder fFolder;
  testing::ProgramAnswer fAnswer{fFolder / "answer"};
  testing::ScopedEnvironment fPath{"PATH", (fFolder / "bin") + ":/usr/bin:/bin"};
  testing::ScopedEnvironment fHome{"HOME", fFolder / "home"};
};

TEST_F(StandardPaneServices, OpenThePackagedUninstallerAtItsGivenPath) {
  const std::string program = fFolder / "Veltrix Uninstaller.app/Veltrix Uninstaller";
  fAnswer.writeProgram(program, "{ echo \"ran $0\"; echo end; } > \"$answer\"\n");
  standardPaneServices(Bundle(fFolder.path())).openFile(kUninstallerPath);
  EXPECT_EQ(fAnswer.text(), "ran " + program + "\nend\n");
}

TEST_F(StandardPaneServices, HandAddressesToTheDesktop) {
  fAnswer.writeProgram(fFolder / "bin/xdg-open", "{ echo \"$1\"; echo end; } > \"$answer\"\n");
  standardPaneServices(Bundle(fFolder.path())).openUrl(kSupportUrl);
  EXPECT_EQ(fAnswer.text(), "https://veltrix.aldmoor.example/support\nend\n");
}

TEST_F(StandardPaneServices, KnowHomeTimeAndSystem) {
  const PaneServices services = standardPaneServices(Bundle(fFolder.path()));
  EXPECT_EQ(services.homeDirectory(), fFolder / "home");
  EXPECT_GT(services.osRelease().major, 0);
  const auto before = std::chrono::system_clock::now();
  EXPECT_GE(services.now(), before);
}

}  // namespace
}  // namespace veltrix
