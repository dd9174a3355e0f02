#include <sys/socket.h>
#include <systemd/sd-bus.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <span>

#include "helper/helper_core.h"
#include "helperlink/device_state.h"
#include "platform/event_wire.h"

// Packets as a hostile program of the session could send them: to the helper, to the window, and as the
// answer that the window gets.
namespace {

using veltrix::BusHandle;
using veltrix::BusMessageHandle;

// Takes the input apart from its front; an input that has ended reads as zeros.
class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size) : fBytes(data, size) {}

  bool empty() const { return fBytes.empty(); }
  std::uint32_t number() {
    std::uint32_t value = 0;
    const auto bytes = take(sizeof value);
    if (!bytes.empty())
      std::memcpy(&value, bytes.data(), bytes.size());
    return value;
  }
  std::span<const std::uint8_t> take(std::size_t size) {
    const auto bytes = fBytes.first(size < fBytes.size() ? size : fBytes.size());
    fBytes = fBytes.subspan(bytes.size());
    return bytes;
  }

 private:
  std::span<const std::uint8_t> fBytes;
};

void require(bool condition) {
  if (!condition)
    std::abort();
}

// A connection on which messages can be made; nobody is at its other end.
sd_bus* makeBus() {
  int sockets[2];
  sd_bus* bus = nullptr;
  require(socketpair(AF_UNIX, SOCK_STREAM, 0, sockets) == 0);
  require(sd_bus_new(&bus) >= 0 && sd_bus_set_fd(bus, sockets[0], sockets[0]) >= 0 && sd_bus_start(bus) >= 0);
  return bus;
}

// A message of the right form or of one that is like it.
BusMessageHandle makeMessage(sd_bus* bus, std::uint32_t form, Input& input) {
  constexpr const char* kForms[] = {"uuuuay", "uay", "uuuu", "u", "", "uuuuau", "suuuay", "ayu"};
  sd_bus_message* raw = nullptr;
  require(sd_bus_message_new_method_call(bus, &raw, "a.b", veltrix::kEventsObject, veltrix::kEventsInterface,
                                         "Send") >= 0);
  BusMessageHandle message(raw);
  for (const char* type = kForms[form % std::size(kForms)]; *type != '\0'; ++type) {
    if (*type == 'u')
      require(sd_bus_message_append(raw, "u", input.number()) >= 0);
    if (*type == 's')
      require(sd_bus_message_append(raw, "s", "text") >= 0);
    if (*type != 'a')
      continue;
    ++type;
    const std::size_t unit = *type == 'u' ? sizeof(std::uint32_t) : 1;
    const auto bytes = input.take(input.number() % 70000 / unit * unit);
    require(sd_bus_message_append_array(raw, *type, bytes.data(), bytes.size() / unit * unit) >= 0);
  }
  require(sd_bus_message_seal(raw, 1, 0) >= 0 && sd_bus_message_rewind(raw, 1) >= 0);
  return message;
}

void askHelper(veltrix::HelperCore& core, sd_bus_message* message) {
  veltrix::IncomingEvent event;
  veltrix::EventReply reply;
  if (veltrix::readEventCall(message, &event) != 0)
    return;
  require(event.parameter.data().size() <= veltrix::kMaximumEventBytes);
  require(VeltrixDeviceStateHandler(event) == 0);
  const std::int32_t status = core.takeEvent(event, &reply);
  const bool answers = status == 0 && event.eventId == veltrix::kGetConnectedDevicesEvent;
  require(reply.parameter().data().size() == (answers ? sizeof(VeltrixDeviceList) : 0));
  require(core.recentMessages().size() <= 16);
}

void takeAnswer(sd_bus_message* message) {
  veltrix::EventReply reply;
  const std::int32_t status = veltrix::readEventReply(message, &reply);
  VeltrixDeviceList list{};
  const std::int32_t read = reply.parameter().read(veltrix::kDirectObjectKeyword, veltrix::kDeviceListType,
                                                   &list, sizeof list, nullptr);
  require(status == 0 || read == veltrix::kEventParameterMissing);
  require(VeltrixDeviceCount(list) <= kVeltrixMaxDevices);
}

void changeDevices(veltrix::HelperCore& core, std::uint32_t choice) {
  const std::string id = std::to_string(choice % 20);
  core.deviceDetached(id);
  veltrix::FoundDevice device{id, {}};
  device.entry.productID = static_cast<std::uint16_t>(choice);
  if (choice % 3 != 0)
    core.deviceAttached(device);
  require(core.deviceList().count == (core.devices().size() < 16 ? core.devices().size() : 16));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static sd_bus* const kBus = makeBus();
  veltrix::HelperCore core("", "");
  veltrix::setDeviceStateConsumer([](const veltrix::DeviceState&) {});
  Input input(data, size);
  while (!input.empty()) {
    const std::uint32_t what = input.number();
    const BusMessageHandle message = makeMessage(kBus, what / 4, input);
    if (what % 4 == 0)
      takeAnswer(message.get());
    if (what % 4 == 1)
      changeDevices(core, what / 4);
    if (what % 4 > 1)
      askHelper(core, message.get());
  }
  core.settle();
  return 0;
}
