#include <gmock/gmock.h>

#include <map>
#include <memory>
#include <nlohmann/json.hpp>

#include "helper/commands/command_table.h"
#include "helper/desktop/display_control.h"
#include "tests/helper/desktop/loop_runner.h"
#include "tests/support/sway_process.h"
#include "tests/support/wait_until.h"

// Every command of the table for sway, in a real one without a screen, looked at with its own program.
namespace veltrix {
namespace {

using nlohmann::json;
using testing::waitUntil;
using testing::wordOf;

class SwayTest : public ::testing::Test {
 protected:
  SwayTest() : fSway("", {{"WLR_BACKENDS", "headless"}, {"DISPLAY", std::nullopt}}) {}

  json get(const char* what) const { return json::parse(fSway.message({"-t", what}).output, nullptr, false); }

  // Opens a window, which then has the focus; the test cannot go on without it.
  void openWindow() {
    const std::size_t before = windows().size();
    fClients.push_back(fSway.startClient({"weston-flower"}));
    ASSERT_TRUE(waitUntil([&] { return windows().size() == before + 1; })) << fClients.back()->output();
  }
  static void collect(const json& node, bool isFloating, std::map<int, json>* found) {
    if (node.value("pid", 0) != 0 && node.value("type", "") != "workspace") {
      (*found)[node["id"].get<int>()] = {{"focused", node["focused"]},
                                         {"fullscreen", node["fullscreen_mode"]},
                                         {"floating", isFloating},
                                         {"visible", node.value("visible", false)},
                                         {"x", node["rect"]["x"]}};
    }
    for (const auto& child : node.value("nodes", json::array())) {
      collect(child, isFloating, found);
    }
    for (const auto& child : node.value("floating_nodes", json::array())) {
      collect(child, true, found);
    }
  }
  std::map<int, json> windows() const {
    std::map<int, json> found;
    const json tree = get("get_tree");
    if (tree.is_object()) {
      collect(tree, false, &found);
    }
    return found;
  }
  int focused() const {
    for (const auto& [id, window] : windows()) {
      if (window["focused"] == true) {
        return id;
      }
    }
    return 0;
  }
  std::string workspace() const {
    for (const auto& each : get("get_workspaces")) {
      if (each["focused"] == true) {
        return each["name"];
      }
    }
    return {};
  }

  // Does what the table has for the command.
  std::string carryOut(std::uint16_t command) {
    for (const CommandRow& row : rowsOfCommand(command)) {
      if (isFor(row, {kOnSway, DisplayKind::kWayland})) {
        const char* const text = std::get<CompositorAttempt>(row.attempt).text;
        return wordOf(fLoop.run([&](Ended ended) { fDisplay.tellCompositor(text, std::move(ended)); }));
      }
    }
    return "no row";
  }

  testing::LoopRunner fLoop;
  testing::SwayProcess fSway;
  std::vector<std::unique_ptr<testing::ChildProcess>> fClients;
  SessionDisplay fDisplay{fLoop.get(), {"", fSway.socket()}, std::chrono::seconds(5)};
};

TEST_F(SwayTest, ClosesTheFocusedWindow) {
  openWindow();
  EXPECT_EQ(carryOut(74), "done");
  EXPECT_TRUE(waitUntil([&] { return windows().empty(); }));
}

TEST_F(SwayTest, MinimizedWindowGoesToTheScratchpad) {
  openWindow();
  const int window = focused();
  EXPECT_EQ(carryOut(75), "done");
  EXPECT_EQ(windows()[window]["visible"], false);
}

TEST_F(SwayTest, MaximizingAndFullScreenAreFullScreen) {
  openWindow();
  const int window = focused();
  for (const std::uint16_t command : std::initializer_list<std::uint16_t>{76, 77}) {
    EXPECT_EQ(carryOut(command), "done");
    EXPECT_EQ(windows()[window]["fullscreen"], 1);
    EXPECT_EQ(carryOut(command), "done");
    EXPECT_EQ(windows()[window]["fullscreen"], 0);
  }
}

TEST_F(SwayTest, FocusGoesFromWindowToWindow) {
  openWindow();
  const int first = focused();
  openWindow();
  const int second = focused();
  ASSERT_NE(first, second);
  EXPECT_EQ(carryOut(78), "done");
  EXPECT_EQ(focused(), first);
  EXPECT_EQ(carryOut(79), "done");
  EXPECT_EQ(focused(), second);
}

TEST_F(SwayTest, TilesMoveToTheirSide) {
  openWindow();
  const int first = focused();
  openWindow();
  const int second = focused();
  ASSERT_LT(windows()[first]["x"], windows()[second]["x"]);
  EXPECT_EQ(carryOut(81), "done");
  EXPECT_GT(windows()[first]["x"], windows()[second]["x"]);
  EXPECT_EQ(carryOut(82), "done");
  EXPECT_LT(windows()[first]["x"], windows()[second]["x"]);
}

TEST_F(SwayTest, WindowOnTopFloats) {
  openWindow();
  const int window = focused();
  EXPECT_EQ(carryOut(86), "done");
  EXPECT_EQ(windows()[window]["floating"], true);
  EXPECT_EQ(carryOut(86), "done");
  EXPECT_EQ(windows()[window]["floating"], false);
}

TEST_F(SwayTest, WorkspacesOfEachNumber) {
  for (std::uint16_t number = 1; number <= 4; ++number) {
    EXPECT_EQ(carryOut(static_cast<std::uint16_t>(93 + number)), "done");
    EXPECT_EQ(workspace(), std::to_string(number));
  }
}

TEST_F(SwayTest, GoesAndTakesWindowsToNeighbouringWorkspaces) {
  openWindow();
  EXPECT_EQ(carryOut(95), "done");
  openWindow();
  const int window = focused();
  EXPECT_EQ(carryOut(90), "done");
  EXPECT_EQ(workspace(), "1");
  EXPECT_EQ(carryOut(91), "done");
  EXPECT_EQ(workspace(), "2");
  EXPECT_EQ(carryOut(92), "done");
  EXPECT_EQ(workspace(), "1");
  EXPECT_EQ(focused(), window);
}

TEST_F(SwayTest, TakesTheWindowToTheNextWorkspace) {
  EXPECT_EQ(carryOut(95), "done");
  openWindow();
  EXPECT_EQ(carryOut(94), "done");
  openWindow();
  const int window = focused();
  EXPECT_EQ(carryOut(93), "done");
  EXPECT_EQ(workspace(), "2");
  EXPECT_EQ(focused(), window);
}

// An output without a screen cannot be turned off, and the compositor says so in its log after it has tried.
TEST_F(SwayTest, TriesToTurnOffTheFocusedScreen) {
  ASSERT_EQ(get("get_outputs")[0]["dpms"], true);
  EXPECT_EQ(fSway.output().find("Failed to commit output"), std::string::npos);
  EXPECT_EQ(carryOut(161), "done");
  EXPECT_TRUE(waitUntil([&] {
    return get("get_outputs")[0]["dpms"] == false ||
           fSway.output().find("Failed to commit output") != std::string::npos;
  }));
}

TEST_F(SwayTest, RefusalIsSaid) {
  const Status status =
      fLoop.run([&](Ended ended) { fDisplay.tellCompositor("nonsense", std::move(ended)); });
  EXPECT_THAT(wordOf(status), ::testing::HasSubstr("nonsense"));
}

TEST_F(SwayTest, HungCompositorDelaysNobody) {
  SessionDisplay impatient(fLoop.get(), {"", fSway.socket()}, std::chrono::milliseconds(300));
  fSway.send(SIGSTOP);
  const Status status = fLoop.run([&](Ended ended) { impatient.tellCompositor("kill", std::move(ended)); });
  EXPECT_EQ(wordOf(status), "the compositor does not answer");
  fSway.send(SIGCONT);
}

}  // namespace
}  // namespace veltrix
