#include "driver/driver_program.h"

#include <systemd/sd-daemon.h>

#include <cstdio>
#include <memory>

#include "driver/device_hub.h"
#include "driver/device_monitor.h"
#include "driver/driver_core.h"
#include "driver/event_loop.h"
#include "driver/fixed_user.h"
#include "driver/key_press_watch.h"
#include "driver/keyboard_watch.h"
#include "driver/link_server.h"
#include "driver/login_active_user.h"
#include "driver/output_devices.h"
#include "driver/stop_signals.h"
#include "driver/version.h"

namespace veltrix {

namespace {

int complain(const Error& error) {
  std::fprintf(stderr, "veltrix-driver: %s\n", error.message.c_str());
  return kExitCannotRun;
}

std::unique_ptr<ActiveUser> makeActiveUser(PollLoop& loop, const DriverOptions& options) {
  if (options.user)
    return std::make_unique<FixedUser>(*options.user);
  return std::make_unique<LoginActiveUser>(loop);
}

// Sleeps whenever there is nothing to do.
Status run(EventLoop& loop, DriverCore& core, const StopSignals& signals) {
  while (!signals.came()) {
    Status waited = loop.waitUntil(core.deadline());
    if (!waited)
      return waited;
    if (core.deadline() != kNever)
      core.expire(loop.now());
  }
  return Done{};
}

// Everything is acquired before anybody is let in.
int serve(EventLoop& loop, const DriverOptions& options, const StopSignals& signals) {
  OutputDevices outputs(loop);
  KeyboardWatch keyboards(loop);
  KeyPressWatch keyPresses;
  DriverCore core(loop, outputs, keyboards, keyPresses);
  keyboards.setListener(&core);
  outputs.setListener(&core);
  const std::unique_ptr<ActiveUser> user = makeActiveUser(loop, options);
  LinkServer server(loop, *user, core, {options.socketPath, kDriverVersion});
  core.setChannel(&server);
  DeviceHub hub(loop, core, keyboards, keyPresses);
  DeviceMonitor monitor(loop, hub);

  // Made early, so that desktops know them when the first event comes. Tried again when settings arrive.
  static_cast<void>(outputs.open());
  if (const Status started = monitor.start(); !started)
    return complain(started.error());
  if (const Status started = server.start(); !started)
    return complain(started.error());
  sd_notify(0, "READY=1");
  const Status ran = run(loop, core, signals);
  sd_notify(0, "STOPPING=1");
  server.stop(DriverAnswer::kStopping);
  return ran ? kExitDone : complain(ran.error());
}

}  // namespace

int runDriver(const DriverOptions& options) {
  EventLoop loop;
  if (const Status started = loop.start(); !started)
    return complain(started.error());
  StopSignals signals(loop);
  if (const Status started = signals.start(); !started)
    return complain(started.error());
  return serve(loop, options, signals);
}

}  // namespace veltrix
