#include "helper/helper_program.h"

#include <systemd/sd-bus.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <memory>

#include "helper/helper_service.h"
#include "helper/jump/accessibility_watch.h"
#include "helper/simulation_interface.h"
#include "helper/udev_device_source.h"
#include "platform/bundle.h"
#include "settings/settings_store.h"

namespace veltrix {

namespace {

constexpr std::chrono::seconds kBusPatience{5};

int complain(const std::string& message, int exitStatus) {
  std::fprintf(stderr, "VeltrixHelper: %s\n", message.c_str());
  return exitStatus;
}

int raiseFlag(sd_event_source* /*source*/, const signalfd_siginfo* /*signal*/, void* flag) {
  *static_cast<bool*>(flag) = true;
  return 0;
}

// From here on SIGTERM and SIGINT raise the flag as the loop runs.
bool takeSignals(sd_event* loop, bool* stopped) {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGTERM);
  sigaddset(&signals, SIGINT);
  std::signal(SIGPIPE, SIG_IGN);
  return sigprocmask(SIG_BLOCK, &signals, nullptr) == 0 &&
         sd_event_add_signal(loop, nullptr, SIGTERM, raiseFlag, stopped) >= 0 &&
         sd_event_add_signal(loop, nullptr, SIGINT, raiseFlag, stopped) >= 0;
}

// A session without its bus is over, so the loop ends with the connection.
bool driveBus(sd_bus* bus, sd_event* loop) {
  const auto timeout = std::chrono::duration_cast<std::chrono::microseconds>(kBusPatience).count();
  return sd_bus_set_method_call_timeout(bus, static_cast<std::uint64_t>(timeout)) >= 0 &&
         sd_bus_set_exit_on_disconnect(bus, 1) >= 0 &&
         sd_bus_attach_event(bus, loop, SD_EVENT_PRIORITY_NORMAL) >= 0;
}

struct BusDetacher {
  void operator()(sd_bus* bus) const { sd_bus_detach_event(bus); }
};

// Simulated trackballs are none that a driver could find.
Status startDriver(HelperService& service, const HelperOptions& options) {
  if (options.simulated && !options.driverSocket)
    return Done{};
  return service.startDriver(options.driverSocket.value_or(kDriverSocketPath));
}

// Without real trackballs the answer is the simulation's.
Status watchAccessibility(AccessibilityWatch& watch, HelperCore& core, sd_bus* bus) {
  core.setAccessibility(false);
  return isX11Session() ? watch.start(bus) : Done{};
}

// Everything is acquired first; then the names make it visible.
int serve(const HelperOptions& options, const Keeper* keeper, sd_bus* bus, sd_event* loop,
          const bool* stopped) {
  HelperCore core(settingsFilePath(), Bundle::standard().pathForResource("DefaultSettings", "plist"));
  std::unique_ptr<DeviceSource> source;
  std::unique_ptr<SimulationInterface> simulation;
  HelperService service(bus, loop, core, options.simulated.has_value());
  AccessibilityWatch accessibility([&core](bool isOn) { core.setAccessibility(isOn); });
  Status ready = service.publish();
  if (options.simulated) {
    auto simulated = std::make_unique<SimulatedDeviceSource>(*options.simulated);
    simulation = std::make_unique<SimulationInterface>(*simulated, core);
    if (ready)
      ready = simulation->publish(bus);
    source = std::move(simulated);
  } else {
    source = std::make_unique<UdevDeviceSource>(loop);
    if (ready)
      ready = watchAccessibility(accessibility, core, bus);
  }
  if (ready)
    ready = source->start(core);
  if (!ready)
    return complain(ready.error().message, kExitCannotStart);
  const Result<bool> claimed = service.claimNames();
  if (!claimed)
    return complain(claimed.error().message, kExitNoBus);
  if (!claimed.value())
    return complain("another helper is running in this session; leaving it to that one", kExitDone);
  // Last, because a second helper that leaves must not take the driver from the first.
  if (const Status driver = startDriver(service, options); !driver)
    return complain(driver.error().message, kExitCannotStart);
  service.startJump(Bundle::standard().resourcePath() + "/veltrix-jump");
  if (keeper != nullptr)
    keeper->keep();
  runEventLoop(loop, stopped);
  return *stopped ? kExitDone : complain("the session bus has gone", kExitNoBus);
}

}  // namespace

int runHelper(const HelperOptions& options, const Keeper* keeper) {
  bool stopped = false;
  const EventLoopHandle loop = makeEventLoop();
  if (loop == nullptr || !takeSignals(loop.get(), &stopped)) {
    return complain("cannot set up the event loop", kExitCannotStart);
  }
  const Result<BusHandle> bus = openSessionBus({}, std::chrono::steady_clock::now() + kBusPatience);
  if (!bus)
    return complain("no session bus: " + bus.error().message, kExitNoBus);
  if (!driveBus(bus.value().get(), loop.get())) {
    return complain("cannot attach the session bus to the event loop", kExitCannotStart);
  }
  const std::unique_ptr<sd_bus, BusDetacher> attached(bus.value().get());
  return serve(options, keeper, bus.value().get(), loop.get(), &stopped);
}

}  // namespace veltrix
