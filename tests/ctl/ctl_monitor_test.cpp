#include <gmock/gmock.h>

#include <csignal>
#include <nlohmann/json.hpp>

#include "tests/support/fake_driver.h"
#include "tests/support/helper_process.h"
#include "tests/support/wait_until.h"

// veltrixctl, the real helper, and a driver's end of the connection.
namespace veltrix {
namespace {

using std::chrono::seconds;
using testing::ChildProcess;
using ::testing::HasSubstr;
using testing::waitUntil;

class CtlMonitor : public ::testing::Test {
 protected:
  void SetUp() override {
    fSession.startHelper({"--simulate", "A1D0:2041:0107", "--driver-socket", fPath});
    ASSERT_TRUE(fDriver.welcome());
    ASSERT_TRUE(fDriver.receive<ApplyPacket>());
  }

  std::unique_ptr<ChildProcess> launch(const std::vector<std::string>& arguments = {}) {
    std::vector<std::string> command = {VELTRIXCTL, "monitor"};
    command.insert(command.end(), arguments.begin(), arguments.end());
    return std::make_unique<ChildProcess>(
        command, testing::EnvironmentChanges{{"DBUS_SESSION_BUS_ADDRESS", fSession.bus().address()},
                                             {"HOME", fPathFolder.path()}});
  }
  // Nothing for none in time.
  std::optional<bool> monitored() {
    const auto packet = fDriver.receive<MonitorPacket>();
    return packet ? std::optional(packet->wanted == 1) : std::nullopt;
  }
  void use(std::uint16_t slot, std::uint16_t command, bool pressed) {
    auto packet = makePacket<ButtonPacket>();
    packet.device = {0xA1D0, 0x2041, 0x107, 0};
    packet.number = 1;
    packet.slot = slot;
    packet.command = command;
    packet.pressed = pressed ? 1 : 0;
    fDriver.send(packet);
  }
  static bool waitForOutput(const ChildProcess& process, const std::string& text) {
    return waitUntil([&] { return process.output().find(text) != std::string::npos; });
  }

  testing::TemporaryFolder fPathFolder;
  std::string fPath = fPathFolder / "driver.sock";
  testing::FakeDriver fDriver{fPath};
  testing::HelperSession fSession;
};

TEST_F(CtlMonitor, ShowsEachUseOfAButtonUntilItIsInterrupted) {
  const auto monitor = launch();
  EXPECT_EQ(monitored(), true);
  EXPECT_TRUE(waitForOutput(*monitor, "driver: works, version 9.8.7\n"));
  use(3, 10, true);
  use(3, 10, false);
  EXPECT_TRUE(waitForOutput(*monitor, "released")) << monitor->output();
  EXPECT_THAT(monitor->output(), HasSubstr("A1D0:2041:0107 #1  button 3   pressed   Keystroke"));
  monitor->send(SIGINT);
  EXPECT_EQ(monitor->waitForExit(seconds(10)), 0) << monitor->output();
  EXPECT_EQ(monitored(), false);
}

TEST_F(CtlMonitor, PrintsAnObjectForEachAsJson) {
  const auto monitor = launch({"--json"});
  EXPECT_EQ(monitored(), true);
  use(12, 20, true);
  ASSERT_TRUE(waitForOutput(*monitor, "}\n"));
  const std::string output = monitor->output();
  const auto line = nlohmann::json::parse(output.substr(output.find('{')));
  EXPECT_EQ(line["slot"], 12);
  EXPECT_EQ(line["pressed"], true);
  EXPECT_EQ(line["by"], "driver");
}

TEST_F(CtlMonitor, TheDriverTellsAsLongAsOneIsLeftThatListens) {
  const auto first = launch();
  EXPECT_EQ(monitored(), true);
  const auto second = launch();
  ASSERT_TRUE(waitForOutput(*second, "driver: works"));
  first->send(SIGTERM);
  EXPECT_EQ(first->waitForExit(seconds(10)), 0);
  use(0, 1, true);
  EXPECT_TRUE(waitForOutput(*second, "button 0"));
  EXPECT_TRUE(fDriver.isSilent());
  second->kill();
  EXPECT_EQ(monitored(), false);
}

TEST_F(CtlMonitor, SaysWhenTheDriverGoesAndComes) {
  const auto monitor = launch();
  EXPECT_EQ(monitored(), true);
  ASSERT_TRUE(waitForOutput(*monitor, "driver: works"));
  fDriver.sendStatus(DriverAnswer::kNotTheActiveUser);
  EXPECT_TRUE(waitForOutput(*monitor, "driver: it serves the user at the screen")) << monitor->output();
  ASSERT_TRUE(fDriver.welcome());
  EXPECT_EQ(monitored(), true);
}

TEST_F(CtlMonitor, EndsWithTheHelper) {
  const auto monitor = launch();
  EXPECT_EQ(monitored(), true);
  ASSERT_TRUE(waitForOutput(*monitor, "driver: works"));
  fSession.helper().send(SIGTERM);
  EXPECT_EQ(monitor->waitForExit(seconds(10)), 1);
  EXPECT_THAT(monitor->output(), HasSubstr("VeltrixHelper has ended"));
}

TEST_F(CtlMonitor, TellsNobodyWhoHasNotAsked) {
  std::string heard;
  const auto listen = [](sd_bus_message* signal, void* text, sd_bus_error*) {
    *static_cast<std::string*>(text) += sd_bus_message_get_member(signal);
    return 0;
  };
  ASSERT_GE(sd_bus_match_signal(fSession.connection(), nullptr, nullptr, nullptr,
                                "com.aldmoor.VeltrixHelper1.Monitor", nullptr, listen, &heard),
            0);
  const auto monitor = launch();
  EXPECT_EQ(monitored(), true);
  use(3, 10, true);
  EXPECT_TRUE(waitForOutput(*monitor, "pressed"));
  // Whatever the helper has sent before this answer has arrived with it.
  EXPECT_EQ(fSession.textProperty("DriverState"), "connected");
  while (sd_bus_process(fSession.connection(), nullptr) > 0) {
  }
  EXPECT_EQ(heard, "");
}

TEST(CtlMonitorAlone, SaysWhenNoHelperRuns) {
  const testing::PrivateBus bus;
  ChildProcess monitor({VELTRIXCTL, "monitor"}, {{"DBUS_SESSION_BUS_ADDRESS", bus.address()}});
  EXPECT_EQ(monitor.waitForExit(seconds(10)), 1);
  EXPECT_EQ(monitor.output(), "veltrixctl: VeltrixHelper is not running\n");
}

}  // namespace
}  // namespace veltrix
