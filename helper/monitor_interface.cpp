#include "helper/monitor_interface.h"

#include <systemd/sd-bus.h>

#include "platform/session_bus.h"
#include "util/system_error.h"

namespace veltrix {

namespace {

int watch(sd_bus_message* call, void* data, sd_bus_error* /*error*/) {
  auto& monitor = *static_cast<MonitorInterface*>(data);
  int wanted = 0;
  int result = sd_bus_message_read(call, "b", &wanted);
  if (result >= 0) {
    result = wanted != 0 ? sd_bus_track_add_sender(monitor.watchers(), call)
                         : sd_bus_track_remove_sender(monitor.watchers(), call);
  }
  if (result < 0)
    return result;
  monitor.countWatchers();
  return sd_bus_reply_method_return(call, "");
}

int lastWatcherGone(sd_bus_track* /*watchers*/, void* monitor) {
  static_cast<MonitorInterface*>(monitor)->countWatchers();
  return 1;  // done; after 0 the bus would call again and again
}

constexpr const char* kButtonArguments = "uqqqqqbb";

constexpr sd_bus_vtable kMonitorTable[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_METHOD_WITH_ARGS("Watch", SD_BUS_ARGS("b", wanted), SD_BUS_NO_RESULT, watch,
                            SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_SIGNAL_WITH_ARGS("Button",
                            SD_BUS_ARGS("u", number, "q", vendor, "q", product, "q", version, "q", slot, "q",
                                        command, "b", pressed, "b", byHelper),
                            0),
    SD_BUS_VTABLE_END,
};

}  // namespace

void BusTrackReleaser::operator()(sd_bus_track* track) const {
  sd_bus_track_unref(track);
}

Status MonitorInterface::publish(sd_bus* bus) {
  sd_bus_track* watchers = nullptr;
  int result = sd_bus_track_new(bus, &watchers, lastWatcherGone, this);
  fWatchers.reset(watchers);
  sd_bus_slot* slot = nullptr;
  if (result >= 0)
    result = sd_bus_add_object_vtable(bus, &slot, kHelperObject, kMonitorInterface, kMonitorTable, this);
  fSlot.reset(slot);
  if (result < 0)
    return systemError(-result, "offer", kMonitorInterface);
  fBus = bus;
  return Done{};
}

// To each watcher alone: what a person does is nobody else's business.
void MonitorInterface::tell(const ButtonPacket& packet) const {
  for (const char* name = sd_bus_track_first(fWatchers.get()); name != nullptr;
       name = sd_bus_track_next(fWatchers.get())) {
    sd_bus_message* raw = nullptr;
    if (sd_bus_message_new_signal(fBus, &raw, kHelperObject, kMonitorInterface, "Button") < 0)
      return;
    const BusMessageHandle message(raw);
    const DeviceAddress& device = packet.device;
    if (sd_bus_message_set_destination(raw, name) >= 0 &&
        sd_bus_message_append(raw, kButtonArguments, packet.number, device.vendor, device.product,
                              device.productVersion, packet.slot, packet.command, int{packet.pressed},
                              int{packet.forHelper}) >= 0) {
      sd_bus_send(fBus, raw, nullptr);
    }
  }
}

void MonitorInterface::countWatchers() {
  const bool wanted = sd_bus_track_count(fWatchers.get()) > 0;
  if (wanted == fWanted)
    return;
  fWanted = wanted;
  fWantedChanged(wanted);
}

}  // namespace veltrix
