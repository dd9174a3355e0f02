#include <linux/input-event-codes.h>

#include "helper/typing/layout_watch.h"
#include "tests/helper/typing/layout_watch_fixture.h"
#include "tests/support/sway_process.h"
#include "tests/support/x_server.h"

// A real sway in a window of an X server, whose keyboard is sway's.
namespace veltrix {
namespace {

class LayoutWatchOnSway : public testing::LayoutWatchTest {
 protected:
  void watch() {
    fWatch = std::make_unique<LayoutWatch>(
        fLoop.get(), sources("", fSway.display()),
        makeGroupSource(fLoop.get(), nullptr, fSway.socket(), SessionKind{kOnSway, DisplayKind::kWayland}));
  }
  void switchTo(const char* group) const {
    const auto run = fSway.message({"input", "type:keyboard", "xkb_switch_layout", group});
    EXPECT_EQ(run.exitCode, 0) << run.output << run.errors;
  }

  testing::XServer fServer;
  testing::SwayProcess fSway{"input type:keyboard xkb_layout us,ru\n",
                             {{"WLR_BACKENDS", "x11"}, {"DISPLAY", fServer.display()}}};
  std::unique_ptr<LayoutWatch> fWatch;
};

TEST_F(LayoutWatchOnSway, ChangeOfTheGroupCounts) {
  watch();
  EXPECT_TRUE(untilTyped(*fWatch, U'a', KEY_A)) << fSway.output();
  switchTo("1");
  EXPECT_TRUE(untilTyped(*fWatch, U'ф', KEY_A)) << fSway.output();
  switchTo("0");
  EXPECT_TRUE(untilTyped(*fWatch, U'a', KEY_A)) << fSway.output();
}

TEST_F(LayoutWatchOnSway, GroupThatIsOnAlreadyCounts) {
  switchTo("1");
  watch();
  EXPECT_TRUE(untilTyped(*fWatch, U'ф', KEY_A)) << fSway.output();
}

}  // namespace
}  // namespace veltrix
