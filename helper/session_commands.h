#pragma once

#include "helper/commands/command_runner.h"
#include "helper/commands/device_actions.h"
#include "helper/desktop/bus_calls.h"
#include "helper/desktop/display_control.h"
#include "helper/desktop/launcher.h"
#include "helper/typing/layout_planner.h"
#include "helper/typing/typist.h"
#include "platform/event_loop.h"

namespace veltrix {

// Everything that carries out commands, put together for the session in which the helper runs.
class SessionCommands {
 public:
  struct Surroundings {
    sd_event* loop;
    sd_bus* bus;  // the session's, attached to the loop
    const HelperCore& core;
    KeySender& keys;
    CommandRunner::Report report;
  };

  // What it refers to must outlive it.
  explicit SessionCommands(Surroundings surroundings);
  SessionCommands(const SessionCommands&) = delete;
  SessionCommands& operator=(const SessionCommands&) = delete;

  // What the driver says.
  void take(const ButtonPacket& packet) { fRunner.take(packet); }
  void take(const KeysTypedPacket& packet) { fTypist.typed(packet); }
  void take(const LampsPacket& packet) { fPlanner.setLamps(packet.lit); }
  void driverGone();

  // For the loop.
  void alarm() { fTypist.timePassed(); }

 private:
  Typist::Surroundings typistSurroundings(KeySender& keys);
  LauncherSurroundings launcherSurroundings(sd_bus* bus);
  void setAlarm(std::optional<Typist::Clock::time_point> when);

  sd_event* fLoop;
  CommandRunner::Report fReport;
  SessionKind fKind;
  EventSourceHandle fAlarm;
  LayoutPlanner fPlanner;
  Typist fTypist;
  SessionDisplay fDisplay;
  SessionBusCalls fBusCalls;
  DesktopLauncher fLauncher;
  DeviceActions fActions;
  CommandRunner fRunner;
};

}  // namespace veltrix
