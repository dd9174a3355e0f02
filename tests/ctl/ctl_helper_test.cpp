#include <systemd/sd-bus.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <thread>

#include "platform/session_bus.h"
#include "tests/ctl/ctl_test.h"
#include "tests/support/private_bus.h"

// The commands that ask the helper: with no bus, no helper, and one that answers.
namespace veltrix {
namespace {

using ::testing::AnyOf;
using ::testing::HasSubstr;

constexpr const char* kObject = "/com/aldmoor/VeltrixHelper";
constexpr const char* kInterface = "com.aldmoor.VeltrixHelper1";

using Message = sd_bus_message*;

int writeDevices(Message reply) {
  return sd_bus_message_append(reply, "a(sqqqqss)", 2, "usb-1", 0xA1D0, 0x2041, 0x0107, 0, "Aldmoor",
                               "Skiffline", "usb-2", 0xA1D0, 0x9999, 0x0203, 1, "", "");
}

int writeRecords(Message reply) {
  int result = sd_bus_message_open_container(reply, 'a', "(sibay)");
  const unsigned char bytes[] = {0x01, 0xFF};
  for (int i = 0; i < 2 && result >= 0; ++i) {
    sd_bus_message_open_container(reply, 'r', "sibay");
    sd_bus_message_append(reply, "sib", i == 0 ? "usb-1" : "usb-2", i == 0 ? 3 : -1, 0);
    sd_bus_message_append_array(reply, 'y', bytes, i == 0 ? sizeof bytes : 0);
    result = sd_bus_message_close_container(reply);
  }
  return result < 0 ? result : sd_bus_message_close_container(reply);
}

int getProperty(sd_bus* /*bus*/, const char* /*path*/, const char* /*interface*/, const char* property,
                Message reply, void* /*data*/, sd_bus_error* /*error*/) {
  const std::string name = property;
  if (name == "Devices") {
    return writeDevices(reply);
  }
  if (name == "Records") {
    return writeRecords(reply);
  }
  if (name == "Generation") {
    return sd_bus_message_append(reply, "u", 4000000000U);
  }
  if (name == "RecentMessages") {
    return sd_bus_message_append(reply, "as", 1, "VXUp");
  }
  if (name == "DriverState") {
    return sd_bus_message_append(reply, "s", "connected");
  }
  if (name == "DriverError") {
    return sd_bus_message_append(reply, "i", 0);
  }
  if (name == "CommandProblems") {
    return sd_bus_message_append(reply, "a(qs)", 2, 91, "an earlier reason", 35, "no key of it");
  }
  if (name == "DriverDevices") {
    return sd_bus_message_append(reply, "a(uqqqsi)", 1, 7, 0xA1D0, 0x2041, 0x0107, "failed", EACCES);
  }
  if (name == "LastJump") {
    return sd_bus_message_append(reply, "(us)", 3, "moved");
  }
  const bool isFlag = name == "Simulated" || name == "AccessibilityGranted" || name == "PaneShown";
  return isFlag ? sd_bus_message_append(reply, "b", name == "Simulated" ? 1 : 0)
                : sd_bus_message_append(reply, "s", ("<" + name + ">").c_str());
}

constexpr sd_bus_vtable kTable[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_PROPERTY("Version", "s", getProperty, 0, 0),
    SD_BUS_PROPERTY("Simulated", "b", getProperty, 0, 0),
    SD_BUS_PROPERTY("Devices", "a(sqqqqss)", getProperty, 0, 0),
    SD_BUS_PROPERTY("Records", "a(sibay)", getProperty, 0, 0),
    SD_BUS_PROPERTY("AccessibilityGranted", "b", getProperty, 0, 0),
    SD_BUS_PROPERTY("SettingsPath", "s", getProperty, 0, 0),
    SD_BUS_PROPERTY("SettingsState", "s", getProperty, 0, 0),
    SD_BUS_PROPERTY("SettingsError", "s", getProperty, 0, 0),
    SD_BUS_PROPERTY("Generation", "u", getProperty, 0, 0),
    SD_BUS_PROPERTY("PaneShown", "b", getProperty, 0, 0),
    SD_BUS_PROPERTY("LastMessage", "s", getProperty, 0, 0),
    SD_BUS_PROPERTY("RecentMessages", "as", getProperty, 0, 0),
    SD_BUS_PROPERTY("DriverState", "s", getProperty, 0, 0),
    SD_BUS_PROPERTY("DriverVersion", "s", getProperty, 0, 0),
    SD_BUS_PROPERTY("DriverError", "i", getProperty, 0, 0),
    SD_BUS_PROPERTY("DriverDevices", "a(uqqqsi)", getProperty, 0, 0),
    SD_BUS_PROPERTY("JumpState", "s", getProperty, 0, 0),
    SD_BUS_PROPERTY("LastJump", "(us)", getProperty, 0, 0),
    SD_BUS_PROPERTY("CommandProblems", "a(qs)", getProperty, 0, 0),
    SD_BUS_VTABLE_END,
};

// Publishes the helper's interface on a bus and answers from a thread of its own.
class FakeHelper {
 public:
  explicit FakeHelper(const std::string& address) {
    auto bus = openSessionBus(address, std::chrono::steady_clock::now() + std::chrono::seconds(10));
    if (!bus) {
      ADD_FAILURE() << bus.error().message;
      return;
    }
    fBus = std::move(bus.value());
    EXPECT_GE(sd_bus_add_object_vtable(fBus.get(), nullptr, kObject, kInterface, kTable, nullptr), 0);
    EXPECT_GE(sd_bus_request_name(fBus.get(), "com.aldmoor.VeltrixHelper", 0), 0);
    fThread = std::thread([this] {
      while (!fDone) {
        while (sd_bus_process(fBus.get(), nullptr) > 0) {
        }
        sd_bus_wait(fBus.get(), 20000);
      }
    });
  }
  ~FakeHelper() {
    fDone = true;
    if (fThread.joinable()) {
      fThread.join();
    }
  }
  FakeHelper(const FakeHelper&) = delete;
  FakeHelper& operator=(const FakeHelper&) = delete;

 private:
  BusHandle fBus;
  std::atomic<bool> fDone = false;
  std::thread fThread;
};

using CtlHelper = testing::CtlTest;

TEST_F(CtlHelper, StatusSaysWhenThereIsNoBus) {
  expect({"status"}, 1, "", HasSubstr("veltrixctl: the session bus cannot be reached"));
}

// Processes are those of the whole system: a helper in another session of the same user is found, and then
// it is the bus that is missing.
TEST_F(CtlHelper, DevicesSaysWhenNoHelperAnswers) {
  expect({"devices"}, 1, "",
         AnyOf("veltrixctl: VeltrixHelper is not running\n",
               "veltrixctl: there is no session bus, or VeltrixHelper ended before it answered\n"));
}

TEST_F(CtlHelper, StatusSaysWhenNoHelperRuns) {
  const testing::PrivateBus bus;
  fBusAddress = bus.address();
  expect({"status"}, 1, "", "veltrixctl: VeltrixHelper is not running\n");
}

TEST_F(CtlHelper, StatusPrintsWhatTheHelperKnows) {
  const testing::PrivateBus bus;
  const FakeHelper helper(bus.address());
  fBusAddress = bus.address();
  expectDone({"status"},
             "VeltrixHelper <Version>, with simulated trackballs\n"
             "settings: <SettingsState>, <SettingsPath>\n"
             "problem: <SettingsError>\n"
             "window open: no\n"
             "accessibility: no\n"
             "jumping: <JumpState>, dialogs: 3, the last: moved\n"
             "last message: <LastMessage>\n"
             "driver: works, version <DriverVersion>\n"
             "last command that failed: Copy: no key of it\n"
             "A1D0:2041:0107  Skiffline™ Trackball  (usb-1)\n"
             "  record of devices/3\n"
             "  01ff\n"
             "  driver: cannot be used: Permission denied\n"
             "A1D0:9999:0203  unknown kind  (usb-2)\n"
             "  no record: no entry of the settings is for it\n"
             "  driver: has not found it\n");
}

TEST_F(CtlHelper, StatusPrintsJson) {
  const testing::PrivateBus bus;
  const FakeHelper helper(bus.address());
  fBusAddress = bus.address();
  const auto status = json({"status", "--json"});
  EXPECT_EQ(status["Version"], "<Version>");
  EXPECT_EQ(status["Simulated"], true);
  EXPECT_EQ(status["Generation"], 4000000000U);
  EXPECT_EQ(status["RecentMessages"], nlohmann::json({"VXUp"}));
  EXPECT_EQ(status["Devices"][0], nlohmann::json({{"id", "usb-1"},
                                                  {"vendor", 0xA1D0},
                                                  {"product", 0x2041},
                                                  {"version", 0x0107},
                                                  {"interface", 0},
                                                  {"vendorName", "Aldmoor"},
                                                  {"productName", "Skiffline"}}));
  EXPECT_EQ(status["Records"][0],
            nlohmann::json({{"id", "usb-1"}, {"entryIndex", 3}, {"global", false}, {"record", "01ff"}}));
  EXPECT_EQ(status["DriverState"], "connected");
  EXPECT_EQ(status["LastJump"], nlohmann::json({{"dialogs", 3}, {"outcome", "moved"}}));
  EXPECT_EQ(status["CommandProblems"][1],
            nlohmann::json({{"command", 35}, {"title", "Copy"}, {"reason", "no key of it"}}));
  EXPECT_EQ(status["DriverDevices"], nlohmann::json::array({{{"number", 7},
                                                             {"vendor", 0xA1D0},
                                                             {"product", 0x2041},
                                                             {"version", 0x0107},
                                                             {"condition", "failed"},
                                                             {"error", EACCES}}}));
}

}  // namespace
}  // namespace veltrix
