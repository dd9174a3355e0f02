#include <systemd/sd-bus.h>
#include <unistd.h>

#include <utility>

#include "platform/event_receiver.h"

namespace veltrix {

namespace {

// Both requests wait for the connection by themselves. A name that another instance has is queued for: it
// comes to this process when that one ends.
bool requestNames(sd_bus* bus, const std::string& application) {
  const ProcessSerialNumber self{.startTime = 0, .pid = static_cast<std::uint32_t>(getpid())};
  return sd_bus_request_name_async(bus, nullptr, EventAddress(application, self).busName().c_str(),
                                   SD_BUS_NAME_QUEUE, nullptr, nullptr) >= 0 &&
         sd_bus_request_name_async(bus, nullptr, EventAddress(application).busName().c_str(),
                                   SD_BUS_NAME_QUEUE, nullptr, nullptr) >= 0;
}

}  // namespace

EventReceiverThread::EventReceiverThread(std::string application, EventHandler handler,
                                         std::string busAddress)
    : fApplication(std::move(application)),
      fHandler(std::move(handler)),
      fBusAddress(std::move(busAddress)),
      fThread([this](sd_event* loop, const bool* stopped) { run(loop, stopped); }) {}

void EventReceiverThread::run(sd_event* loop, const bool* stopped) {
  const Result<BusHandle> bus = startSessionBus(fBusAddress);
  if (!bus)
    return;
  sd_bus* connection = bus.value().get();
  const auto receiver = EventReceiver::onBus(connection, fHandler);
  if (!receiver || !requestNames(connection, fApplication))
    return;
  if (sd_bus_set_exit_on_disconnect(connection, 1) < 0 ||
      sd_bus_attach_event(connection, loop, SD_EVENT_PRIORITY_NORMAL) < 0) {
    return;
  }
  runEventLoop(loop, stopped);
  sd_bus_detach_event(connection);
}

}  // namespace veltrix
