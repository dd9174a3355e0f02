#pragma once

#include <deque>
#include <initializer_list>
#include <memory>

#include "helper/commands/command_runner.h"
#include "helper/driver_report.h"
#include "helper/helper_core.h"
#include "helper/jump/jump_program.h"
#include "platform/session_bus.h"
#include "util/result.h"

struct sd_bus;

namespace veltrix {

inline constexpr const char* kHelperObject = "/com/aldmoor/VeltrixHelper";
inline constexpr const char* kHelperInterface = "com.aldmoor.VeltrixHelper1";

inline constexpr std::size_t kShownProblems = 8;

// Shows the core's state on the bus, read-only. A reader sees every message that it sent before.
class StatusInterface {
 public:
  StatusInterface(HelperCore& core, bool simulated) : fCore(core), fSimulated(simulated) {}
  StatusInterface(const StatusInterface&) = delete;
  StatusInterface& operator=(const StatusInterface&) = delete;

  // The connection must outlive the object.
  Status publish(sd_bus* bus);

  // Tells those who watch that these properties have changed.
  void announce(std::initializer_list<const char*> properties) const;

  // What is shown of the driver from now on.
  void setDriver(const DriverReport& driver);

  // Shown with those before it, the last kShownProblems of them.
  void addProblem(const CommandProblem& problem);

  HelperCore& core() const { return fCore; }
  const DriverReport& driver() const { return fDriver; }
  void setJump(const JumpReport& jump);
  const JumpReport& jump() const { return fJump; }
  bool simulated() const { return fSimulated; }
  const std::deque<CommandProblem>& problems() const { return fProblems; }  // oldest first

 private:
  HelperCore& fCore;
  bool fSimulated;
  DriverReport fDriver;
  JumpReport fJump;
  std::deque<CommandProblem> fProblems;
  sd_bus* fBus = nullptr;
  BusSlotHandle fSlot;
};

}  // namespace veltrix
