#include "tests/support/helper_process.h"

#include <gtest/gtest.h>

#include "helper/simulation_interface.h"
#include "helper/status_interface.h"
#include "helperlink/helper_messaging.h"
#include "tests/support/wait_until.h"

namespace veltrix::testing {

namespace {

constexpr const char* kHelperName = "com.aldmoor.VeltrixHelper";

class CallError {
 public:
  CallError() = default;
  ~CallError() { sd_bus_error_free(&fError); }
  CallError(const CallError&) = delete;
  CallError& operator=(const CallError&) = delete;
  sd_bus_error* get() { return &fError; }
  std::string name() const { return fError.name != nullptr ? fError.name : ""; }

 private:
  sd_bus_error fError = SD_BUS_ERROR_NULL;
};

}  // namespace

std::int16_t OneProcessTable::nextProcess(ProcessSerialNumber* psn) {
  std::int16_t status = 0;
  do {
    status = fReal->nextProcess(psn);
  } while (status == 0 && psn->pid != fPid);
  return status;
}

HelperSession::HelperSession()
    : fConnection(std::move(
          openSessionBus(fBus.address(), std::chrono::steady_clock::now() + std::chrono::seconds(10))
              .value())),
      fTransport(makeBusEventTransport(fBus.address())),
      fFormer(setHelperLinkServices({.processes = &fProcesses, .events = fTransport.get()})) {}

HelperSession::~HelperSession() {
  setHelperLinkServices(fFormer);
}

std::string HelperSession::settingsPath() const {
  return fHome / "Library/Preferences/com.aldmoor.veltrix.settings.plist";
}

std::unique_ptr<ChildProcess> HelperSession::launch(const std::vector<std::string>& arguments) const {
  const char* resources = std::getenv("VELTRIX_RESOURCES");
  std::vector<std::string> command = {std::string(resources != nullptr ? resources : "") +
                                      "/VeltrixHelper.app/VeltrixHelper"};
  command.insert(command.end(), arguments.begin(), arguments.end());
  return std::make_unique<ChildProcess>(
      command, EnvironmentChanges{{"HOME", fHome.path()}, {"DBUS_SESSION_BUS_ADDRESS", fBus.address()}});
}

void HelperSession::startHelper(const std::vector<std::string>& arguments) {
  std::vector<std::string> all(arguments);
  all.emplace_back("--no-keeper");  // tests kill it and want it dead
  fHelper = launch(all);
  fProcesses.setPid(fHelper->pid());
  VeltrixDeviceList list{};
  ASSERT_TRUE(waitUntil([&] { return VeltrixGetConnectedDevices(&list) == 0; })) << fHelper->output();
}

std::uint32_t HelperSession::generation() {
  std::uint32_t value = 0;
  EXPECT_GE(sd_bus_get_property_trivial(connection(), kHelperName, kHelperObject, kHelperInterface,
                                        "Generation", nullptr, 'u', &value),
            0);
  return value;
}

std::string HelperSession::textProperty(const char* name) {
  char* value = nullptr;
  EXPECT_GE(sd_bus_get_property_string(connection(), kHelperName, kHelperObject, kHelperInterface, name,
                                       nullptr, &value),
            0);
  const std::unique_ptr<char, decltype(&std::free)> owned(value, std::free);
  return value != nullptr ? value : "(none)";
}

bool HelperSession::flagProperty(const char* name) {
  int value = 0;
  EXPECT_GE(sd_bus_get_property_trivial(connection(), kHelperName, kHelperObject, kHelperInterface, name,
                                        nullptr, 'b', &value),
            0);
  return value != 0;
}

std::vector<std::vector<unsigned char>> HelperSession::records() {
  std::vector<std::vector<unsigned char>> result;
  sd_bus_message* raw = nullptr;
  EXPECT_GE(sd_bus_get_property(connection(), kHelperName, kHelperObject, kHelperInterface, "Records",
                                nullptr, &raw, "a(sibay)"),
            0);
  const BusMessageHandle reply(raw);
  if (raw == nullptr || sd_bus_message_enter_container(raw, 'a', "(sibay)") < 0)
    return result;
  while (sd_bus_message_enter_container(raw, 'r', "sibay") > 0) {
    const void* bytes = nullptr;
    std::size_t size = 0;
    EXPECT_GE(sd_bus_message_skip(raw, "sib"), 0);
    EXPECT_GE(sd_bus_message_read_array(raw, 'y', &bytes, &size), 0);
    const auto* first = static_cast<const unsigned char*>(bytes);
    result.emplace_back(first, first + size);
    EXPECT_GE(sd_bus_message_exit_container(raw), 0);
  }
  return result;
}

std::string HelperSession::simulate(const char* method, const std::string& device) {
  CallError error;
  sd_bus_call_method(connection(), kHelperName, kHelperObject, kSimulationInterface, method, error.get(),
                     nullptr, "s", device.c_str());
  return error.name();
}

}  // namespace veltrix::testing
