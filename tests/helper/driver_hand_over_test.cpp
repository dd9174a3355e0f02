#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>

#include "helperlink/helper_messaging.h"
#include "helperlink/helper_protocol.h"
#include "platform/property_list_io.h"
#include "tests/support/fake_driver.h"
#include "tests/support/helper_process.h"
#include "tests/support/settings_documents.h"
#include "tests/support/wait_until.h"

// The real helper and a driver's end of the connection.
namespace veltrix {
namespace {

using testing::dictionaryOf;
using testing::FakeDriver;
using testing::waitUntil;

constexpr const char* kSkiffline = "A1D0:2041:0107";

class DriverHandOver : public ::testing::Test {
 protected:
  void SetUp() override { fDriver = std::make_unique<FakeDriver>(fPath); }

  void writeSpeed(int speed, bool enabled = true) {
    auto entry = testing::entryOf(0xA1D0, 0x2041);
    entry.set("driver enabled", enabled);
    entry.set("options", dictionaryOf({{"speed", speed}}));
    entry.set("param", dictionaryOf({{"timeStop", speed}}));
    testing::writeFile(fSession.settingsPath(), plist::writeXml(testing::documentOf({entry})).value());
  }
  void changeSpeed(int speed, bool enabled = true) {
    writeSpeed(speed, enabled);
    ASSERT_EQ(VeltrixSendMessageToHelper(kSettingsChangedMessage), 0);
  }
  void startHelper(const std::string& devices = kSkiffline) {
    fSession.startHelper({"--simulate", devices, "--driver-socket", fPath});
  }
  bool waitForState(const std::string& state) {
    return waitUntil([&] { return fSession.textProperty("DriverState") == state; });
  }

  testing::TemporaryFolder fFolder;
  std::string fPath = fFolder / "driver.sock";
  testing::HelperSession fSession;
  std::unique_ptr<FakeDriver> fDriver;
};

TEST_F(DriverHandOver, GivesATrackballOfNoKnownKindTheRecordForEveryDevice) {
  auto global = testing::entryOf(0, 0);
  global.set("buttons", dictionaryOf({{"03", testing::actionOf(180)}}));
  testing::writeFile(
      fSession.settingsPath(),
      plist::writeXml(testing::documentOf({testing::entryOf(0xA1D0, 0x2041), global})).value());
  startHelper("A1D0:FEED:0100");
  ASSERT_TRUE(fDriver->welcome());
  auto order = fDriver->receive<ApplyPacket>();
  ASSERT_TRUE(order);
  EXPECT_EQ(order->device, (DeviceAddress{0xA1D0, 0xFEED, 0x100, 0}));
  EXPECT_EQ(order->record.driverEnabled, 1);
  EXPECT_EQ(order->record.action[3].command, 180);
  // One that is switched off leaves the trackball an ordinary mouse.
  global.set("driver enabled", false);
  testing::writeFile(fSession.settingsPath(), plist::writeXml(testing::documentOf({global})).value());
  ASSERT_EQ(VeltrixSendMessageToHelper(kSettingsChangedMessage), 0);
  order = fDriver->receive<ApplyPacket>();
  ASSERT_TRUE(order);
  EXPECT_EQ(order->record.driverEnabled, 0);
}

TEST_F(DriverHandOver, GivesTheRecordOfEachTrackballAndEachChangeOfIt) {
  writeSpeed(400);
  startHelper();
  ASSERT_TRUE(fDriver->welcome());
  auto order = fDriver->receive<ApplyPacket>();
  ASSERT_TRUE(order);
  EXPECT_EQ(order->device, (DeviceAddress{0xA1D0, 0x2041, 0x107, 0}));
  EXPECT_EQ(order->record.speed, 20);
  EXPECT_EQ(order->record.driverEnabled, 1);
  EXPECT_EQ(order->scroll.timeStop, 400);
  changeSpeed(800, false);
  order = fDriver->receive<ApplyPacket>();
  ASSERT_TRUE(order);
  EXPECT_EQ(order->record.speed, 40);
  EXPECT_EQ(order->record.driverEnabled, 0);
}

TEST_F(DriverHandOver, FollowsTrackballsThatComeAndGo) {
  writeSpeed(400);
  startHelper("");
  ASSERT_TRUE(fDriver->welcome());
  ASSERT_TRUE(waitForState("connected"));
  EXPECT_EQ(fSession.simulate("Plug", kSkiffline), "");
  ASSERT_TRUE(fDriver->receive<ApplyPacket>());
  EXPECT_EQ(fSession.simulate("Plug", kSkiffline), "");
  EXPECT_EQ(fSession.simulate("Unplug", kSkiffline), "");
  EXPECT_TRUE(fDriver->isSilent());
  EXPECT_EQ(fSession.simulate("Unplug", kSkiffline), "");
  const auto withdrawn = fDriver->receive<WithdrawPacket>();
  EXPECT_TRUE(withdrawn && withdrawn->device.product == 0x2041);
}

TEST_F(DriverHandOver, WithdrawsATrackballWhoseEntryHasGone) {
  writeSpeed(400);
  startHelper();
  ASSERT_TRUE(fDriver->welcome());
  ASSERT_TRUE(fDriver->receive<ApplyPacket>());
  testing::writeFile(fSession.settingsPath(),
                     plist::writeXml(testing::documentOf({testing::entryOf(0xA1D0, 0x1020)})).value());
  ASSERT_EQ(VeltrixSendMessageToHelper(kSettingsChangedMessage), 0);
  EXPECT_TRUE(fDriver->receive<WithdrawPacket>());
}

TEST_F(DriverHandOver, GivesEverythingAgainToADriverThatRestarts) {
  startHelper();
  ASSERT_TRUE(fDriver->welcome());
  ASSERT_TRUE(fDriver->receive<ApplyPacket>());
  fDriver.reset();
  ASSERT_TRUE(waitUntil([&] { return fSession.textProperty("DriverState").substr(0, 4) == "not-"; }));
  fDriver = std::make_unique<FakeDriver>(fPath);
  ASSERT_TRUE(fDriver->welcome());
  EXPECT_TRUE(fDriver->receive<ApplyPacket>());
  EXPECT_TRUE(waitForState("connected"));
}

TEST_F(DriverHandOver, AConnectionEndsWithTheHelper) {
  startHelper();
  ASSERT_TRUE(fDriver->welcome());
  fSession.helper().send(SIGTERM);
  EXPECT_TRUE(fDriver->sawEnd());
}

TEST_F(DriverHandOver, StatusSaysWhetherTheDriverIsThereAndWhyNot) {
  startHelper();
  EXPECT_EQ(fSession.textProperty("DriverState"), "connecting");
  ASSERT_TRUE(fDriver->refuse(DriverAnswer::kNotTheActiveUser));
  EXPECT_TRUE(waitForState("other-user"));
  ASSERT_TRUE(fDriver->welcome());
  EXPECT_TRUE(waitForState("connected"));
  EXPECT_EQ(fSession.textProperty("DriverVersion"), "9.8.7");
  fDriver->sendStatus(DriverAnswer::kAccepted, false);
  EXPECT_TRUE(waitForState("no-outputs"));
  fDriver->sendStatus(DriverAnswer::kBrokenRule);
  EXPECT_TRUE(waitForState("incompatible"));
  EXPECT_EQ(fSession.textProperty("DriverVersion"), "");
}

// The commands and reasons of the property.
std::vector<std::pair<std::uint16_t, std::string>> problemsOf(sd_bus* bus) {
  std::vector<std::pair<std::uint16_t, std::string>> problems;
  sd_bus_message* reply = nullptr;
  sd_bus_get_property(bus, "com.aldmoor.VeltrixHelper", "/com/aldmoor/VeltrixHelper",
                      "com.aldmoor.VeltrixHelper1", "CommandProblems", nullptr, &reply, "a(qs)");
  std::uint16_t command = 0;
  const char* reason = nullptr;
  if (reply != nullptr && sd_bus_message_enter_container(reply, 'a', "(qs)") > 0) {
    while (sd_bus_message_read(reply, "(qs)", &command, &reason) > 0) problems.emplace_back(command, reason);
  }
  sd_bus_message_unref(reply);
  return problems;
}

TEST_F(DriverHandOver, TheLastCommandsThatFailedAreShownInTheirOrder) {
  auto entry = testing::entryOf(0xA1D0, 0x2041);
  // Neither is possible without a desktop.
  entry.set("buttons", dictionaryOf({{"02", testing::actionOf(107)}, {"03", testing::actionOf(136)}}));
  testing::writeFile(fSession.settingsPath(), plist::writeXml(testing::documentOf({entry})).value());
  startHelper();
  ASSERT_TRUE(fDriver->welcome());
  ASSERT_TRUE(fDriver->receive<ApplyPacket>());
  auto packet = makePacket<ButtonPacket>();
  packet.device = {0xA1D0, 0x2041, 0x107, 0};
  packet.forHelper = 1;
  packet.pressed = 1;
  for (int i = 0; i < 10; ++i) {
    packet.slot = i == 9 ? 3 : 2;
    packet.command = i == 9 ? 136 : 107;
    fDriver->send(packet);
  }
  ASSERT_TRUE(waitUntil([&] {
    const auto problems = problemsOf(fSession.connection());
    return !problems.empty() && problems.back().first == 136;
  }));
  const auto problems = problemsOf(fSession.connection());
  ASSERT_EQ(problems.size(), 8U);
  EXPECT_EQ(problems[0].first, 107);
  EXPECT_EQ(problems[7].second, "it is not possible on this desktop");
}

TEST_F(DriverHandOver, AHelperThatFindsAnotherOneDoesNotTakeItsDriver) {
  startHelper();
  ASSERT_TRUE(fDriver->welcome());
  ASSERT_TRUE(fDriver->receive<ApplyPacket>());
  const auto second = fSession.launch({"--simulate", kSkiffline, "--driver-socket", fPath});
  EXPECT_EQ(second->waitForExit(std::chrono::seconds(10)), 0);
  EXPECT_FALSE(fDriver->accept(std::chrono::milliseconds(0)));
}

TEST_F(DriverHandOver, SimulatedTrackballsHaveNoDriverUnlessToldSo) {
  fSession.startHelper({"--simulate", kSkiffline});
  EXPECT_EQ(fSession.textProperty("DriverState"), "unused");
}

}  // namespace
}  // namespace veltrix
