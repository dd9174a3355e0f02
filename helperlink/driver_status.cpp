#include "helperlink/driver_status.h"

#include <systemd/sd-bus.h>

#include <cstring>
#include <optional>
#include <string_view>
#include <utility>

#include "platform/loop_thread.h"
#include "platform/session_bus.h"

namespace veltrix {

namespace {

constexpr const char* kHelperName = "com.aldmoor.VeltrixHelper";
constexpr const char* kHelperObject = "/com/aldmoor/VeltrixHelper";
constexpr const char* kHelperInterface = "com.aldmoor.VeltrixHelper1";
constexpr const char* kPropertiesInterface = "org.freedesktop.DBus.Properties";
constexpr const char* kOwnerMatch =
    "type='signal',sender='org.freedesktop.DBus',interface='org.freedesktop.DBus',"
    "member='NameOwnerChanged',arg0='com.aldmoor.VeltrixHelper'";

bool readText(sd_bus_message* message, std::string* text) {
  const char* value = nullptr;
  if (sd_bus_message_read(message, "v", "s", &value) < 0)
    return false;
  *text = value;
  return true;
}

bool readDevices(sd_bus_message* message, std::vector<DriverStatusDevice>* devices) {
  if (sd_bus_message_enter_container(message, 'v', "a(uqqqsi)") < 0 ||
      sd_bus_message_enter_container(message, 'a', "(uqqqsi)") < 0) {
    return false;
  }
  devices->clear();
  std::uint32_t number = 0;
  DriverStatusDevice device;
  const char* condition = nullptr;
  while (sd_bus_message_read(message, "(uqqqsi)", &number, &device.vendor, &device.product, &device.version,
                             &condition, &device.error) > 0) {
    device.condition = condition;
    devices->push_back(device);
  }
  const bool arrayEnded = sd_bus_message_exit_container(message) >= 0;
  return arrayEnded && sd_bus_message_exit_container(message) >= 0;
}

bool readProperty(sd_bus_message* message, std::string_view name, DriverStatus* status) {
  if (name == "DriverState")
    return readText(message, &status->state);
  if (name == "DriverVersion")
    return readText(message, &status->version);
  if (name == "DriverError")
    return sd_bus_message_read(message, "v", "i", &status->error) >= 0;
  if (name == "DriverDevices")
    return readDevices(message, &status->devices);
  return sd_bus_message_skip(message, "v") >= 0;
}

// Takes over what a table of properties says of the driver. False when it is no such table.
bool readProperties(sd_bus_message* message, DriverStatus* status) {
  if (sd_bus_message_enter_container(message, 'a', "{sv}") < 0)
    return false;
  while (sd_bus_message_enter_container(message, 'e', "sv") > 0) {
    const char* name = nullptr;
    if (sd_bus_message_read(message, "s", &name) < 0 || !readProperty(message, name, status) ||
        sd_bus_message_exit_container(message) < 0) {
      return false;
    }
  }
  return sd_bus_message_exit_container(message) >= 0;
}

// The watch on its thread.
class Follower {
 public:
  Follower(sd_bus* bus, const DriverStatusConsumer& consumer) : fBus(bus), fConsumer(consumer) {}

  bool start() {
    // Waiting for the answers is the loop's business: no bus, however slow, holds up the end of the thread.
    return sd_bus_add_match_async(fBus, nullptr, kOwnerMatch, ownerChanged, nullptr, this) >= 0 &&
           sd_bus_match_signal_async(fBus, nullptr, nullptr, kHelperObject, kPropertiesInterface,
                                     "PropertiesChanged", propertiesChanged, nullptr, this) >= 0 &&
           ask();
  }

 private:
  bool ask() {
    sd_bus_message* raw = nullptr;
    if (sd_bus_message_new_method_call(fBus, &raw, kHelperName, kHelperObject, kPropertiesInterface,
                                       "GetAll") < 0) {
      return false;
    }
    const BusMessageHandle call(raw);
    return sd_bus_message_set_auto_start(raw, 0) >= 0 &&
           sd_bus_message_append(raw, "s", kHelperInterface) >= 0 &&
           sd_bus_call_async(fBus, nullptr, raw, answered, this, 0) >= 0;
  }

  void tell(DriverStatus status) {
    if (fTold == status)
      return;
    fTold = std::move(status);
    fConsumer(*fTold);
  }

  static int answered(sd_bus_message* answer, void* data, sd_bus_error* /*error*/) {
    auto& self = *static_cast<Follower*>(data);
    DriverStatus status;
    status.helperRuns = sd_bus_message_is_method_error(answer, nullptr) == 0;
    // A helper of another version may say less.
    if (status.helperRuns)
      readProperties(answer, &status);
    self.tell(std::move(status));
    return 0;
  }

  static int propertiesChanged(sd_bus_message* signal, void* data, sd_bus_error* /*error*/) {
    auto& self = *static_cast<Follower*>(data);
    const char* interface = nullptr;
    if (sd_bus_message_read(signal, "s", &interface) < 0 || std::strcmp(interface, kHelperInterface) != 0)
      return 0;
    DriverStatus status = self.fTold.value_or(DriverStatus{});
    if (!status.helperRuns) {
      self.ask();  // it has come back to life
    } else if (readProperties(signal, &status)) {
      self.tell(std::move(status));
    }
    return 0;
  }

  static int ownerChanged(sd_bus_message* /*signal*/, void* data, sd_bus_error* /*error*/) {
    static_cast<Follower*>(data)->ask();
    return 0;
  }

  sd_bus* fBus;
  const DriverStatusConsumer& fConsumer;
  std::optional<DriverStatus> fTold;
};

void follow(sd_event* loop, const bool* stopped, const std::string& busAddress,
            const DriverStatusConsumer& consumer) {
  const Result<BusHandle> bus = startSessionBus(busAddress);
  if (!bus)
    return;
  sd_bus* connection = bus.value().get();
  Follower follower(connection, consumer);
  if (sd_bus_set_exit_on_disconnect(connection, 1) < 0 || !follower.start() ||
      sd_bus_attach_event(connection, loop, SD_EVENT_PRIORITY_NORMAL) < 0) {
    return;
  }
  runEventLoop(loop, stopped);
  sd_bus_detach_event(connection);
}

}  // namespace

DriverStatusWatch::DriverStatusWatch(DriverStatusConsumer consumer, const std::string& busAddress)
    : fThread(std::make_unique<LoopThread>(
          [consumer = std::move(consumer), busAddress](sd_event* loop, const bool* stopped) {
            follow(loop, stopped, busAddress, consumer);
          })) {}

DriverStatusWatch::~DriverStatusWatch() = default;

}  // namespace veltrix
