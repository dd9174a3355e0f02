#include <gmock/gmock.h>
#include <xcb/dpms.h>
#include <xcb/xcb.h>

#include <memory>
#include <optional>

#include "helper/desktop/display_control.h"
#include "tests/helper/desktop/loop_runner.h"
#include "tests/support/program_run.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/wait_until.h"
#include "tests/support/x_server.h"

// Against a real window manager, and looked at with a program that has nothing to do with ours.
namespace veltrix {
namespace {

using ::testing::HasSubstr;
using testing::waitUntil;
using testing::wordOf;
using namespace std::chrono_literals;

// A plain window; it takes part in no protocol, so that whoever closes it ends its connection.
class PlainWindow {
 public:
  explicit PlainWindow(const std::string& display) : fConnection(xcb_connect(display.c_str(), nullptr)) {
    const xcb_screen_t* const screen = xcb_setup_roots_iterator(xcb_get_setup(fConnection.get())).data;
    fId = xcb_generate_id(fConnection.get());
    xcb_create_window(fConnection.get(), XCB_COPY_FROM_PARENT, fId, screen->root, 50, 50, 200, 150, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual, 0, nullptr);
    // It takes the focus.
    const std::uint32_t hints[9] = {1, 1, 0, 0, 0, 0, 0, 0, 0};
    xcb_change_property(fConnection.get(), XCB_PROP_MODE_REPLACE, fId, XCB_ATOM_WM_HINTS, XCB_ATOM_WM_HINTS,
                        32, 9, hints);
    xcb_map_window(fConnection.get(), fId);
    xcb_flush(fConnection.get());
  }

  std::string id() const { return std::to_string(fId); }
  bool isClosed() const {
    while (const X11Reply event{xcb_poll_for_event(fConnection.get())}) {
    }
    return xcb_connection_has_error(fConnection.get()) != 0;
  }

 private:
  X11Connection fConnection;
  xcb_window_t fId = 0;
};

class WindowManagerTest : public ::testing::Test {
 protected:
  void startWindowManager() {
    fManager.emplace(
        std::vector<std::string>{"openbox"},
        testing::EnvironmentChanges{
            {"DISPLAY", fServer.display()}, {"HOME", fHome.path()}, {"XDG_CONFIG_HOME", fHome.path()}});
    // It says that it is there before it listens; windows that it finds then are not given the focus.
    EXPECT_TRUE(rootComesToSay("_NET_SUPPORTING_WM_CHECK", "0x"));
    for (const char* const number : {"1", "0"}) {
      EXPECT_TRUE(waitUntil([&] {
        testing::runProgram({"xdotool", "set_desktop", number}, {{"DISPLAY", fServer.display()}});
        return rootSays("_NET_CURRENT_DESKTOP").find(std::string("= ") + number) != std::string::npos;
      }));
    }
  }
  std::string say(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), {"xprop", "-display", fServer.display()});
    return testing::runProgram(arguments, {}).output;
  }
  std::string rootSays(const char* property) const { return say({"-root", property}); }
  std::string windowSays(const PlainWindow& window, const char* property) const {
    return say({"-id", window.id(), property});
  }
  bool rootComesToSay(const char* property, const char* text) const {
    return waitUntil([&] { return rootSays(property).find(text) != std::string::npos; });
  }
  bool windowComesToSay(const PlainWindow& window, const char* property, const char* text) const {
    return waitUntil([&] { return windowSays(window, property).find(text) != std::string::npos; });
  }
  bool isActive(const PlainWindow& window) const {
    char id[16];
    std::snprintf(id, sizeof id, "0x%lx", std::stoul(window.id()));
    return rootComesToSay("_NET_ACTIVE_WINDOW", id);
  }
  std::string operate(SessionDisplay& display, DisplayAttempt attempt) const {
    return wordOf(fLoop.run([&](Ended ended) { display.operate(attempt, std::move(ended)); }));
  }
  std::string operate(DisplayOperation operation, std::uint8_t workspace = 0) {
    return operate(fDisplay, {operation, workspace});
  }

  testing::LoopRunner fLoop;
  testing::TemporaryFolder fHome;
  testing::XServer fServer;
  std::optional<testing::ChildProcess> fManager;
  SessionDisplay fDisplay{fLoop.get(), {fServer.display(), ""}, 10s};
};

constexpr const char* kCurrent = "_NET_CURRENT_DESKTOP";

TEST_F(WindowManagerTest, ClosesTheActiveWindowAlone) {
  startWindowManager();
  const PlainWindow other(fServer.display());
  ASSERT_TRUE(isActive(other));
  const PlainWindow window(fServer.display());
  ASSERT_TRUE(isActive(window));
  EXPECT_EQ(operate(DisplayOperation::kClose), "done");
  EXPECT_TRUE(waitUntil([&] { return window.isClosed(); }));
  EXPECT_FALSE(other.isClosed());
}

TEST_F(WindowManagerTest, MinimizesTheActiveWindow) {
  startWindowManager();
  const PlainWindow window(fServer.display());
  ASSERT_TRUE(isActive(window));
  EXPECT_EQ(operate(DisplayOperation::kMinimize), "done");
  EXPECT_TRUE(windowComesToSay(window, "WM_STATE", "Iconic"));
}

TEST_F(WindowManagerTest, MaximizesAndRestores) {
  startWindowManager();
  const PlainWindow window(fServer.display());
  ASSERT_TRUE(isActive(window));
  EXPECT_EQ(operate(DisplayOperation::kToggleMaximized), "done");
  EXPECT_TRUE(windowComesToSay(window, "_NET_WM_STATE", "_MAXIMIZED_VERT"));
  EXPECT_THAT(windowSays(window, "_NET_WM_STATE"), HasSubstr("_MAXIMIZED_HORZ"));
  EXPECT_EQ(operate(DisplayOperation::kToggleMaximized), "done");
  EXPECT_TRUE(waitUntil(
      [&] { return windowSays(window, "_NET_WM_STATE").find("_MAXIMIZED_") == std::string::npos; }));
}

TEST_F(WindowManagerTest, KeepsTheWindowOnTopAndEndsThat) {
  startWindowManager();
  const PlainWindow window(fServer.display());
  ASSERT_TRUE(isActive(window));
  EXPECT_EQ(operate(DisplayOperation::kToggleAbove), "done");
  EXPECT_TRUE(windowComesToSay(window, "_NET_WM_STATE", "_ABOVE"));
  EXPECT_EQ(operate(DisplayOperation::kToggleAbove), "done");
  EXPECT_TRUE(
      waitUntil([&] { return windowSays(window, "_NET_WM_STATE").find("_ABOVE") == std::string::npos; }));
}

TEST_F(WindowManagerTest, GoesToWorkspaces) {
  startWindowManager();
  ASSERT_TRUE(rootComesToSay("_NET_NUMBER_OF_DESKTOPS", "= 4"));
  EXPECT_EQ(operate(DisplayOperation::kWorkspace, 3), "done");
  EXPECT_TRUE(rootComesToSay(kCurrent, "= 2"));
  EXPECT_EQ(operate(DisplayOperation::kNextWorkspace), "done");
  EXPECT_TRUE(rootComesToSay(kCurrent, "= 3"));
  EXPECT_EQ(operate(DisplayOperation::kNextWorkspace), "done");
  EXPECT_EQ(operate(DisplayOperation::kPreviousWorkspace), "done");
  EXPECT_TRUE(rootComesToSay(kCurrent, "= 2"));
}

TEST_F(WindowManagerTest, TakesTheWindowAlong) {
  startWindowManager();
  const PlainWindow window(fServer.display());
  ASSERT_TRUE(isActive(window));
  EXPECT_EQ(operate(DisplayOperation::kTakeToNextWorkspace), "done");
  EXPECT_TRUE(rootComesToSay(kCurrent, "= 1"));
  EXPECT_TRUE(windowComesToSay(window, "_NET_WM_DESKTOP", "= 1"));
  EXPECT_TRUE(isActive(window));
  EXPECT_EQ(operate(DisplayOperation::kTakeToPreviousWorkspace), "done");
  EXPECT_TRUE(rootComesToSay(kCurrent, "= 0"));
  EXPECT_TRUE(windowComesToSay(window, "_NET_WM_DESKTOP", "= 0"));
}

TEST_F(WindowManagerTest, WindowThatIsShownEverywhereMeanwhileIsOnOneWorkspaceThen) {
  startWindowManager();
  const PlainWindow window(fServer.display());
  ASSERT_TRUE(isActive(window));
  EXPECT_EQ(operate(fDisplay, {DisplayOperation::kTakeToNextWorkspace, 0, true}), "done");
  EXPECT_TRUE(rootComesToSay(kCurrent, "= 1"));
  EXPECT_TRUE(windowComesToSay(window, "_NET_WM_DESKTOP", "= 1"));
  EXPECT_TRUE(isActive(window));
}

TEST_F(WindowManagerTest, ShowsTheDesktopAndBringsWindowsBack) {
  startWindowManager();
  const PlainWindow window(fServer.display());
  ASSERT_TRUE(isActive(window));
  EXPECT_EQ(operate(DisplayOperation::kToggleShowDesktop), "done");
  EXPECT_TRUE(rootComesToSay("_NET_SHOWING_DESKTOP", "= 1"));
  EXPECT_EQ(operate(DisplayOperation::kToggleShowDesktop), "done");
  EXPECT_TRUE(rootComesToSay("_NET_SHOWING_DESKTOP", "= 0"));
}

TEST_F(WindowManagerTest, ManyAtOnceAreDoneInTheirOrder) {
  startWindowManager();
  ASSERT_TRUE(rootComesToSay("_NET_NUMBER_OF_DESKTOPS", "= 4"));
  int done = 0;
  for (const std::uint8_t workspace : std::initializer_list<std::uint8_t>{4, 2, 3}) {
    fDisplay.operate({DisplayOperation::kWorkspace, workspace},
                     [&](const Status& status) { done += status ? 1 : 0; });
  }
  EXPECT_TRUE(fLoop.runUntil([&] { return done == 3; }));
  EXPECT_TRUE(rootComesToSay(kCurrent, "= 2"));
}

TEST_F(WindowManagerTest, WithoutAWindowManagerEveryRequestFails) {
  EXPECT_THAT(operate(DisplayOperation::kClose), HasSubstr("does not know _NET_"));
  EXPECT_THAT(operate(DisplayOperation::kNextWorkspace), HasSubstr("does not know _NET_"));
}

// A server without a real screen may say that it cannot; then it has to be so.
TEST_F(WindowManagerTest, ScreenIsTurnedOffOrTheReasonIsSaid) {
  const std::string outcome = operate(DisplayOperation::kTurnOffScreen);
  const X11Connection connection(xcb_connect(fServer.display().c_str(), nullptr));
  const auto* const extension = xcb_get_extension_data(connection.get(), &xcb_dpms_id);
  bool canTurnOff = false;
  bool isOff = false;
  if (extension->present != 0) {
    const X11Reply capable(
        xcb_dpms_capable_reply(connection.get(), xcb_dpms_capable(connection.get()), nullptr));
    canTurnOff = static_cast<const xcb_dpms_capable_reply_t*>(capable.get())->capable != 0;
    const X11Reply info(xcb_dpms_info_reply(connection.get(), xcb_dpms_info(connection.get()), nullptr));
    isOff = static_cast<const xcb_dpms_info_reply_t*>(info.get())->power_level == XCB_DPMS_DPMS_MODE_OFF;
  }
  EXPECT_EQ(outcome == "done", canTurnOff) << outcome;
  EXPECT_EQ(isOff, canTurnOff);
}

TEST_F(WindowManagerTest, WithoutAServerTheOperationFails) {
  SessionDisplay none(fLoop.get(), {"", ""}, 3s);
  EXPECT_EQ(operate(none, {DisplayOperation::kClose}), "there is no X server");
  SessionDisplay nowhere(fLoop.get(), {":9999", ""}, 3s);
  EXPECT_EQ(operate(nowhere, {DisplayOperation::kClose}), "cannot connect to the X server");
}

TEST_F(WindowManagerTest, HungServerDelaysNobodyAndFailsAllThatWait) {
  SessionDisplay impatient(fLoop.get(), {fServer.display(), ""}, 200ms);
  fServer.freeze();
  std::vector<std::string> outcomes;
  const auto begin = std::chrono::steady_clock::now();
  for (int i = 0; i < 3; ++i) {
    impatient.operate({DisplayOperation::kClose},
                      [&](const Status& status) { outcomes.push_back(wordOf(status)); });
  }
  EXPECT_LT(std::chrono::steady_clock::now() - begin, 100ms);
  EXPECT_TRUE(fLoop.runUntil([&] { return outcomes.size() == 3; }));
  EXPECT_THAT(outcomes, ::testing::Each("the X server does not answer"));
  fServer.thaw();
}

TEST_F(WindowManagerTest, ServerThatHangsLaterIsFoundAgain) {
  startWindowManager();
  SessionDisplay impatient(fLoop.get(), {fServer.display(), ""}, 500ms);
  EXPECT_EQ(operate(impatient, {DisplayOperation::kWorkspace, 2}), "done");
  fServer.freeze();
  EXPECT_EQ(operate(impatient, {DisplayOperation::kWorkspace, 3}), "the X server does not answer");
  fServer.thaw();
  EXPECT_TRUE(waitUntil([&] { return operate(impatient, {DisplayOperation::kWorkspace, 4}) == "done"; }));
  EXPECT_TRUE(rootComesToSay(kCurrent, "= 3"));
}

TEST_F(WindowManagerTest, ServerThatEndsIsAnErrorAndNoEndOfOurs) {
  EXPECT_THAT(operate(DisplayOperation::kClose), HasSubstr("does not know"));
  fServer.stop();
  EXPECT_NE(operate(DisplayOperation::kClose), "done");
  EXPECT_EQ(operate(DisplayOperation::kClose), "cannot connect to the X server");
}

TEST_F(WindowManagerTest, EndsWhileTheServerHangs) {
  fServer.freeze();
  {
    SessionDisplay display(fLoop.get(), {fServer.display(), ""}, 3s);
    display.operate({DisplayOperation::kClose}, [](const Status&) { FAIL() << "nobody is left to tell"; });
  }
  fServer.thaw();
}

}  // namespace
}  // namespace veltrix
