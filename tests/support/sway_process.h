#pragma once

#include <memory>
#include <string>
#include <vector>

#include "tests/support/child_process.h"
#include "tests/support/program_run.h"
#include "tests/support/temporary_folder.h"

namespace veltrix::testing {

// A sway of its own, drawn by no graphics card and without devices of the machine. It ends with the object.
class SwayProcess {
 public:
  // Waits until it answers; the test fails when it does not start. `environment` says what it runs on.
  SwayProcess(const std::string& configuration, const EnvironmentChanges& environment);

  std::string socket() const { return fFolder / "ipc"; }         // as in SWAYSOCK
  std::string display() const { return fFolder / "wayland-1"; }  // as in WAYLAND_DISPLAY

  std::unique_ptr<ChildProcess> startClient(const std::vector<std::string>& program) const;
  // Runs its own program for messages.
  ProgramRun message(std::vector<std::string> arguments) const;

  std::string output() const { return fSway->output(); }
  void send(int signal) const { fSway->send(signal); }
  // Ends it and with it every connection.
  void stop() { fSway->kill(); }

 private:
  std::unique_ptr<ChildProcess> start(const std::vector<std::string>& program,
                                      const EnvironmentChanges& environment) const;

  TemporaryFolder fFolder;
  std::vector<std::string> fAsUser;
  std::unique_ptr<ChildProcess> fSway;
};

}  // namespace veltrix::testing
