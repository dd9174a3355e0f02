#pragma once

#include <memory>

#include "helper/desktop/problem_notice.h"
#include "helper/driver_link.h"
#include "helper/helper_core.h"
#include "helper/jump/jump_program.h"
#include "helper/monitor_interface.h"
#include "helper/session_commands.h"
#include "helper/status_interface.h"
#include "platform/bundle.h"
#include "platform/event_loop.h"
#include "platform/event_receiver.h"

namespace veltrix {

// Connects the core with the session bus and with the driver: takes the pane's events, tells the pane of
// changed devices and the driver what holds for them, shows the status. The connection, the loop (to which
// the connection is attached) and the core must outlive it.
class HelperService final : public HelperObserver, public DriverListener {
 public:
  HelperService(sd_bus* bus, sd_event* loop, HelperCore& core, bool simulated);
  ~HelperService() override;
  HelperService(const HelperService&) = delete;
  HelperService& operator=(const HelperService&) = delete;

  // Offers everything on the bus. Before claimNames() nobody finds it there.
  Status publish();

  // Takes the helper's names: false when another helper has them.
  Result<bool> claimNames();

  // Connects to the driver at that socket and stays connected; from now on commands are carried out. Called
  // once.
  Status startDriver(const std::string& socketPath);

  // Has the program at that path move the pointer to the default buttons of dialogs, whenever a connected
  // trackball is set to do so and it is possible. Called once.
  void startJump(const std::string& programPath);

  void readingIsDue() override;
  void settingsRead() override;
  void devicesChanged() override;
  void messageTaken() override;

  void driverReportChanged(const DriverReport& report) override;
  void driverButton(const ButtonPacket& packet) override;
  void driverTyped(const KeysTypedPacket& packet) override;
  void driverLamps(const LampsPacket& packet) override;

 private:
  void tellDriver();
  void decideJump();
  void commandFailed(const CommandProblem& problem);
  void setMonitored(bool monitored);

  sd_bus* fBus;
  sd_event* fLoop;
  HelperCore& fCore;
  StatusInterface fStatus;
  Bundle fBundle = Bundle::standard();
  ProblemNotice fNotice{fLoop, fBus};
  MonitorInterface fMonitor{[this](bool wanted) { setMonitored(wanted); }};
  std::unique_ptr<EventReceiver> fReceiver;
  EventSourceHandle fReading;
  std::unique_ptr<DriverLink> fDriver;
  std::unique_ptr<JumpProgram> fJump;
  std::unique_ptr<SessionCommands> fCommands;
};

}  // namespace veltrix
