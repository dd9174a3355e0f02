#pragma once

#include <systemd/sd-bus.h>

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "driverlink/record.h"
#include "helperlink/helper_link_services.h"
#include "platform/bus_event_transport.h"
#include "platform/session_bus.h"
#include "tests/support/child_process.h"
#include "tests/support/private_bus.h"
#include "tests/support/temporary_folder.h"

namespace veltrix::testing {

// Shows the processes of the system with one pid, so that helpers of other sessions stay out of sight.
class OneProcessTable : public ProcessTable {
 public:
  void setPid(pid_t pid) { fPid = static_cast<std::uint32_t>(pid); }
  std::int16_t nextProcess(ProcessSerialNumber* psn) override;
  std::int16_t processName(const ProcessSerialNumber& psn, std::string* name) override {
    return fReal->processName(psn, name);
  }

 private:
  std::unique_ptr<ProcessTable> fReal = makeProcessTable();
  std::uint32_t fPid = 0;
};

// A session with a home folder, a bus, and the real helper of the build tree when it is started. The
// functions of helper_messaging.h reach that helper.
class HelperSession {
 public:
  HelperSession();
  ~HelperSession();
  HelperSession(const HelperSession&) = delete;
  HelperSession& operator=(const HelperSession&) = delete;

  // Starts a helper and waits until it answers.
  void startHelper(const std::vector<std::string>& arguments);
  // Starts one without waiting; it is not the one that the functions reach.
  std::unique_ptr<ChildProcess> launch(const std::vector<std::string>& arguments) const;

  PrivateBus& bus() { return fBus; }
  ChildProcess& helper() { return *fHelper; }
  std::string settingsPath() const;
  sd_bus* connection() { return fConnection.get(); }

  // Properties of the status interface; the test fails when they cannot be read.
  std::uint32_t generation();
  std::string textProperty(const char* name);
  bool flagProperty(const char* name);
  // The bytes of each device's record; empty for a device without one.
  std::vector<std::vector<unsigned char>> records();
  // Calls a method of the simulation; the name of the error, empty when there was none.
  std::string simulate(const char* method, const std::string& device);

 private:
  TemporaryFolder fHome;
  PrivateBus fBus;
  BusHandle fConnection;
  std::unique_ptr<EventTransport> fTransport;
  OneProcessTable fProcesses;
  HelperLinkServices fFormer;
  std::unique_ptr<ChildProcess> fHelper;
};

}  // namespace veltrix::testing
