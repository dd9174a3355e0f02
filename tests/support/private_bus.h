#pragma once

#include <memory>
#include <string>

#include "tests/support/child_process.h"
#include "tests/support/temporary_folder.h"

namespace veltrix::testing {

// A session bus of the test's own, with an empty set of services. It ends with the object.
class PrivateBus {
 public:
  PrivateBus();

  const std::string& address() const { return fAddress; }

  // Ends the bus and with it every connection.
  void stop() { fDaemon.reset(); }
  // Starts it again at the same address.
  void start();
  // Lets it hang without closing anything, and go on.
  void freeze() { fDaemon->send(SIGSTOP); }
  void thaw() { fDaemon->send(SIGCONT); }

 private:
  TemporaryFolder fFolder;
  std::string fAddress;
  std::unique_ptr<ChildProcess> fDaemon;
};

}  // namespace veltrix::testing
