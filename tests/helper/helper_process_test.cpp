#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <systemd/sd-bus.h>

#include <chrono>
#include <csignal>
#include <cstring>
#include <mutex>

#include "helper/status_interface.h"
#include "helperlink/device_state.h"
#include "helperlink/helper_messaging.h"
#include "helperlink/helper_protocol.h"
#include "platform/event_wire.h"
#include "platform/property_list_io.h"
#include "tests/support/helper_process.h"
#include "tests/support/settings_documents.h"
#include "tests/support/wait_until.h"

namespace veltrix {
namespace {

using std::chrono::seconds;
using ::testing::HasSubstr;
using testing::HelperSession;
using testing::waitUntil;

constexpr std::size_t kSpeedByte = 1;

class HelperProcess : public ::testing::Test {
 protected:
  void writeSpeed(int speed) {
    auto entry = testing::entryOf(0xA1D0, 0x2041);
    entry.set("options", testing::dictionaryOf({{"speed", speed}}));
    testing::writeFile(fSession.settingsPath(), plist::writeXml(testing::documentOf({entry})).value());
  }
  std::uint16_t deviceCount() {
    VeltrixDeviceList list{};
    EXPECT_EQ(VeltrixGetConnectedDevices(&list), 0);
    return list.count;
  }

  HelperSession fSession;
};

TEST_F(HelperProcess, TellsTheSimulatedDevices) {
  fSession.startHelper({"--simulate", "A1D0:2041:0107,A1D0:1020:010A"});
  VeltrixDeviceList list{};
  ASSERT_EQ(VeltrixGetConnectedDevices(&list), 0);
  EXPECT_EQ(list.count, 2);
  EXPECT_EQ(list.helperState, kVeltrixHelperStateAccessibility);
  EXPECT_EQ(list.device[1].productID, 0x1020);
  EXPECT_EQ(list.device[1].productVers, 0x010A);
  EXPECT_TRUE(fSession.flagProperty("Simulated"));
}

TEST_F(HelperProcess, HoldsFactoryRecordsWithoutAUserFile) {
  fSession.startHelper({"--simulate", "A1D0:2041:0107"});
  EXPECT_EQ(fSession.textProperty("SettingsState"), "factory");
  EXPECT_EQ(fSession.textProperty("SettingsError"), "");
  EXPECT_EQ(fSession.textProperty("SettingsPath"), fSession.settingsPath());
  const auto records = fSession.records();
  ASSERT_EQ(records.size(), 1U);
  EXPECT_EQ(records[0].size(), sizeof(DriverRecord));
}

TEST_F(HelperProcess, FollowsDevicesThatComeAndGo) {
  fSession.startHelper({"--simulate", ""});
  EXPECT_EQ(deviceCount(), 0);
  EXPECT_EQ(fSession.simulate("Plug", "A1D0:2041:0107"), "");
  EXPECT_EQ(fSession.simulate("Plug", "A1D0:1022:0100"), "");
  EXPECT_EQ(deviceCount(), 2);
  EXPECT_EQ(fSession.simulate("Unplug", "A1D0:2041:0107"), "");
  EXPECT_EQ(deviceCount(), 1);
  EXPECT_EQ(fSession.simulate("Unplug", "A1D0:2041:0107"), "com.aldmoor.VeltrixHelper1.Error.NotConnected");
  EXPECT_EQ(fSession.simulate("Plug", "trackball"), SD_BUS_ERROR_INVALID_ARGS);
  EXPECT_EQ(deviceCount(), 1);
}

TEST_F(HelperProcess, TellsThePaneOfChangedDevices) {
  fSession.startHelper({"--simulate", ""});
  std::mutex mutex;
  std::vector<DeviceState> states;
  setDeviceStateConsumer([&](const DeviceState& state) {
    const std::lock_guard<std::mutex> lock(mutex);
    states.push_back(state);
  });
  {
    const EventReceiverThread pane(
        "VeltrixPane",
        [](const IncomingEvent& event, EventReply*) { return VeltrixDeviceStateHandler(event); },
        fSession.bus().address());
    EXPECT_TRUE(waitUntil([&] {
      return sd_bus_get_name_creds(fSession.connection(), "com.aldmoor.VeltrixPane", 0, nullptr) >= 0;
    }));
    EXPECT_EQ(fSession.simulate("Plug", "A1D0:2041:0107"), "");
    EXPECT_TRUE(waitUntil([&] {
      const std::lock_guard<std::mutex> lock(mutex);
      return !states.empty();
    }));
  }
  setDeviceStateConsumer({});
  ASSERT_EQ(states.size(), 1U);
  EXPECT_EQ(states[0][0], std::byte{1});
  EXPECT_EQ(states[0][2], std::byte{1});
}

TEST_F(HelperProcess, ReadsTheSettingsAgainWhenTold) {
  writeSpeed(400);
  fSession.startHelper({"--simulate", "A1D0:2041:0107"});
  EXPECT_EQ(fSession.textProperty("SettingsState"), "user");
  EXPECT_EQ(fSession.records().at(0).at(kSpeedByte), 20);
  const std::uint32_t before = fSession.generation();
  writeSpeed(800);
  EXPECT_EQ(fSession.generation(), before);
  EXPECT_EQ(VeltrixSendMessageToHelper(kSettingsChangedMessage), 0);
  EXPECT_TRUE(waitUntil([&] { return fSession.generation() == before + 1; }));
  EXPECT_EQ(fSession.records().at(0).at(kSpeedByte), 40);
  EXPECT_EQ(fSession.textProperty("LastMessage"), "VXUp");
}

TEST_F(HelperProcess, ReaderOfTheStatusSeesTheMessagesThatItSentBefore) {
  writeSpeed(400);
  fSession.startHelper({"--simulate", "A1D0:2041:0107"});
  const ProcessSerialNumber helper{.startTime = 0,
                                   .pid = static_cast<std::uint32_t>(fSession.helper().pid())};
  for (int speed = 420; speed <= 1400; speed += 20) {
    writeSpeed(speed);
    Event event(EventAddress("VeltrixHelper", helper), kVeltrixEventClass, kHelperMessageEvent);
    const std::uint32_t message = kSettingsChangedMessage;
    ASSERT_EQ(
        event.putParameter(kDirectObjectKeyword, kUnsigned32Type, std::as_bytes(std::span(&message, 1))), 0);
    ASSERT_EQ(queueEvent(fSession.connection(), event), 0);
    ASSERT_EQ(fSession.records().at(0).at(kSpeedByte), speed / 20);
  }
}

TEST_F(HelperProcess, WatchersAreToldOfNewRecords) {
  writeSpeed(400);
  fSession.startHelper({"--simulate", "A1D0:2041:0107"});
  bool told = false;
  const auto note = [](sd_bus_message* signal, void* flag, sd_bus_error*) {
    sd_bus_message_skip(signal, "s");
    sd_bus_message_enter_container(signal, 'a', "{sv}");
    while (sd_bus_message_enter_container(signal, 'e', "sv") > 0) {
      const char* name = nullptr;
      sd_bus_message_read(signal, "s", &name);
      if (name != nullptr && std::strcmp(name, "Records") == 0)
        *static_cast<bool*>(flag) = true;
      sd_bus_message_skip(signal, "v");
      sd_bus_message_exit_container(signal);
    }
    return 0;
  };
  ASSERT_GE(sd_bus_match_signal(fSession.connection(), nullptr, nullptr, kHelperObject,
                                "org.freedesktop.DBus.Properties", "PropertiesChanged", note, &told),
            0);
  EXPECT_EQ(VeltrixSendMessageToHelper(kSettingsChangedMessage), 0);
  EXPECT_TRUE(waitUntil([&] {
    while (sd_bus_process(fSession.connection(), nullptr) > 0) {
    }
    return told;
  }));
}

TEST_F(HelperProcess, UnreadableSettingsLeaveTheLastGoodRecordsInForce) {
  writeSpeed(400);
  fSession.startHelper({"--simulate", "A1D0:2041:0107"});
  const auto records = fSession.records();
  const std::uint32_t before = fSession.generation();
  testing::writeFile(fSession.settingsPath(), "<plist><dict>");
  EXPECT_EQ(VeltrixSendMessageToHelper(kSettingsChangedMessage), 0);
  EXPECT_TRUE(waitUntil([&] { return fSession.generation() > before; }));
  EXPECT_EQ(fSession.records(), records);
  EXPECT_THAT(fSession.textProperty("SettingsError"), HasSubstr(fSession.settingsPath()));
  writeSpeed(600);
  EXPECT_EQ(VeltrixSendMessageToHelper(kSettingsChangedMessage), 0);
  EXPECT_TRUE(waitUntil([&] { return fSession.records().at(0).at(kSpeedByte) == 30; }));
  EXPECT_EQ(fSession.textProperty("SettingsError"), "");
}

TEST_F(HelperProcess, KnowsWhetherThePaneIsShown) {
  fSession.startHelper({"--simulate", ""});
  EXPECT_FALSE(fSession.flagProperty("PaneShown"));
  EXPECT_EQ(VeltrixSendMessageToHelper(kPaneShownMessage), 0);
  EXPECT_TRUE(waitUntil([&] { return fSession.flagProperty("PaneShown"); }));
  EXPECT_EQ(VeltrixSendMessageToHelper(kPaneLeftMessage), 0);
  EXPECT_TRUE(waitUntil([&] { return !fSession.flagProperty("PaneShown"); }));
}

TEST_F(HelperProcess, SecondOneLeavesTheSessionToTheFirst) {
  fSession.startHelper({"--simulate", "A1D0:2041:0107"});
  const auto second = fSession.launch({"--simulate", ""});
  EXPECT_EQ(second->waitForExit(seconds(10)), 0);
  EXPECT_THAT(second->output(), HasSubstr("another helper is running"));
  EXPECT_EQ(deviceCount(), 1);
}

TEST_F(HelperProcess, EndsCleanlyWhenAsked) {
  for (const int signal : {SIGTERM, SIGINT}) {
    fSession.startHelper({"--simulate", ""});
    fSession.helper().send(signal);
    EXPECT_EQ(fSession.helper().waitForExit(seconds(10)), 0);
    EXPECT_EQ(fSession.helper().output(), "");
  }
}

TEST_F(HelperProcess, EndsWhenAskedThoughTheBusHangs) {
  fSession.startHelper({"--simulate", ""});
  fSession.bus().freeze();
  fSession.helper().send(SIGTERM);
  EXPECT_EQ(fSession.helper().waitForExit(seconds(10)), 0);
}

TEST_F(HelperProcess, KilledOneIsNoSuchProcessAndTheNextIsFound) {
  fSession.startHelper({"--simulate", "A1D0:2041:0107"});
  VeltrixDeviceList list{};
  ASSERT_EQ(VeltrixGetConnectedDevices(&list), 0);
  fSession.helper().kill();
  EXPECT_EQ(VeltrixGetConnectedDevices(&list), -600);
  EXPECT_EQ(list.count, 1);
  EXPECT_EQ(VeltrixSendMessageToHelper(kSettingsChangedMessage), -600);
  fSession.startHelper({"--simulate", "A1D0:2041:0107,A1D0:2041:0106"});
  EXPECT_EQ(VeltrixGetConnectedDevices(&list), 0);
  EXPECT_EQ(list.count, 2);
}

TEST_F(HelperProcess, StoppedOneTimesOutAndKeepsTheList) {
  fSession.startHelper({"--simulate", "A1D0:2041:0107"});
  fSession.helper().send(SIGSTOP);
  VeltrixDeviceList list{};
  list.count = 7;
  EXPECT_EQ(VeltrixGetConnectedDevices(&list), -1712);
  EXPECT_EQ(list.count, 7);
  EXPECT_EQ(VeltrixSendMessageToHelper(kPaneShownMessage), 0);
  fSession.helper().send(SIGCONT);
  EXPECT_TRUE(waitUntil([&] { return fSession.flagProperty("PaneShown"); }));
}

TEST_F(HelperProcess, EndsWithTheBusAndSaysSo) {
  fSession.startHelper({"--simulate", ""});
  fSession.bus().stop();
  EXPECT_EQ(fSession.helper().waitForExit(seconds(10)), 3);
  EXPECT_THAT(fSession.helper().output(), HasSubstr("the session bus has gone"));
}

TEST_F(HelperProcess, SaysThatThereIsNoBus) {
  fSession.bus().stop();
  const auto helper = fSession.launch({"--simulate", ""});
  EXPECT_EQ(helper->waitForExit(seconds(10)), 3);
  EXPECT_THAT(helper->output(), HasSubstr("no session bus"));
}

TEST_F(HelperProcess, ExplainsItself) {
  const auto help = fSession.launch({"--help"});
  EXPECT_EQ(help->waitForExit(seconds(10)), 0);
  EXPECT_THAT(help->output(), HasSubstr("--simulate DEVICES"));
  const auto version = fSession.launch({"--version"});
  EXPECT_EQ(version->waitForExit(seconds(10)), 0);
  EXPECT_THAT(version->output(), HasSubstr("VeltrixHelper "));
  const auto unknown = fSession.launch({"--quiet"});
  EXPECT_EQ(unknown->waitForExit(seconds(10)), 2);
  EXPECT_THAT(unknown->output(), HasSubstr("\"--quiet\""));
}

}  // namespace
}  // namespace veltrix
