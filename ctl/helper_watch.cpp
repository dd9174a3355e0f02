#include "ctl/helper_watch.h"

#include <systemd/sd-bus.h>

#include <csignal>
#include <cstring>

#include "ctl/helper_bus.h"
#include "ctl/helper_properties.h"
#include "ctl/outcome.h"
#include "platform/event_loop.h"

namespace veltrix::ctl {
namespace {

constexpr const char* kMonitorInterface = "com.aldmoor.VeltrixHelper1.Monitor";
constexpr const char* kOwnerMatch =
    "type='signal',sender='org.freedesktop.DBus',interface='org.freedesktop.DBus',"
    "member='NameOwnerChanged',arg0='com.aldmoor.VeltrixHelper'";

// What the callbacks of the bus work on.
struct Watch {
  const HelperWatchCallbacks& callbacks;
  bool stopped = false;     // by a signal
  bool helperGone = false;  // as the bus says
  Json driver = Json::object();

  void takeDriver(const Json& properties) {
    for (const char* name : {"DriverState", "DriverVersion", "DriverError"}) {
      if (properties.contains(name)) {
        driver[name] = properties[name];
      }
    }
    callbacks.driverChanged(driver.value("DriverState", ""), driver.value("DriverVersion", ""),
                            driver.value("DriverError", 0));
  }
};

int buttonUsed(sd_bus_message* signal, void* watch, sd_bus_error* /*error*/) {
  ButtonUse use;
  int pressed = 0;
  int byHelper = 0;
  const int result =
      sd_bus_message_read(signal, "uqqqqqbb", &use.number, &use.device.vendor, &use.device.product,
                          &use.device.version, &use.slot, &use.command, &pressed, &byHelper);
  if (result < 0) {
    return result;
  }
  use.pressed = pressed != 0;
  use.byHelper = byHelper != 0;
  static_cast<Watch*>(watch)->callbacks.buttonUsed(use);
  return 0;
}

int propertiesChanged(sd_bus_message* signal, void* watch, sd_bus_error* /*error*/) {
  const char* interface = nullptr;
  if (sd_bus_message_read(signal, "s", &interface) < 0 || std::strcmp(interface, kHelperInterface) != 0) {
    return 0;
  }
  const Json properties = readPropertyTable(signal);
  if (properties.contains("DriverState")) {
    static_cast<Watch*>(watch)->takeDriver(properties);
  }
  return 0;
}

int ownerChanged(sd_bus_message* /*signal*/, void* watch, sd_bus_error* /*error*/) {
  static_cast<Watch*>(watch)->helperGone = true;
  return 0;
}

int raiseFlag(sd_event_source* /*source*/, const signalfd_siginfo* /*signal*/, void* flag) {
  *static_cast<bool*>(flag) = true;
  return 0;
}

bool takeSignals(sd_event* loop, Watch* watch) {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGINT);
  sigaddset(&signals, SIGTERM);
  return sigprocmask(SIG_BLOCK, &signals, nullptr) == 0 &&
         sd_event_add_signal(loop, nullptr, SIGINT, raiseFlag, &watch->stopped) >= 0 &&
         sd_event_add_signal(loop, nullptr, SIGTERM, raiseFlag, &watch->stopped) >= 0;
}

bool takeSignalsOfBus(sd_bus* bus, Watch* watch) {
  return sd_bus_match_signal(bus, nullptr, nullptr, kHelperObject, kMonitorInterface, "Button", buttonUsed,
                             watch) >= 0 &&
         sd_bus_match_signal(bus, nullptr, nullptr, kHelperObject, "org.freedesktop.DBus.Properties",
                             "PropertiesChanged", propertiesChanged, watch) >= 0 &&
         sd_bus_add_match(bus, nullptr, kOwnerMatch, ownerChanged, watch) >= 0;
}

Status beginWatching(sd_bus* bus, Watch* watch) {
  const auto deadline = std::chrono::steady_clock::now() + kHelperPatience;
  const auto call = newHelperCall(bus, kMonitorInterface, "Watch");
  if (!call || sd_bus_message_append(call.value().get(), "b", 1) < 0) {
    return Error{kNotFound, "the question for VeltrixHelper cannot be written", {}};
  }
  if (const auto answer = callHelper(bus, call.value().get(), deadline); !answer) {
    return answer.error();
  }
  const auto properties = readHelperProperties(bus, deadline);
  if (!properties) {
    return properties.error();
  }
  watch->takeDriver(properties.value());
  return Done{};
}

}  // namespace

Status watchHelper(const HelperWatchCallbacks& callbacks) {
  Watch watch{.callbacks = callbacks};
  // Before the bus: a connection that is attached ends before the loop that drives it.
  const EventLoopHandle loop = makeEventLoop();
  const auto bus = openHelperBus(std::chrono::steady_clock::now() + kHelperPatience);
  if (!bus) {
    return bus.error();
  }
  if (loop == nullptr || !takeSignals(loop.get(), &watch) || !takeSignalsOfBus(bus.value().get(), &watch) ||
      sd_bus_set_exit_on_disconnect(bus.value().get(), 1) < 0 ||
      sd_bus_attach_event(bus.value().get(), loop.get(), SD_EVENT_PRIORITY_NORMAL) < 0) {
    return Error{kNotFound, "the event loop cannot be set up", {}};
  }
  if (Status begun = beginWatching(bus.value().get(), &watch); !begun) {
    return begun;
  }
  while (!watch.stopped && !watch.helperGone && sd_event_get_state(loop.get()) != SD_EVENT_FINISHED &&
         sd_event_run(loop.get(), UINT64_MAX) >= 0) {
  }
  if (watch.stopped) {
    return Done{};
  }
  return Error{kNotFound, watch.helperGone ? "VeltrixHelper has ended" : "the session bus has gone", {}};
}

}  // namespace veltrix::ctl
