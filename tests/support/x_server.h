#pragma once

#include <csignal>
#include <string>
#include <vector>

#include "tests/support/child_process.h"

namespace veltrix::testing {

// An X server of its own without a screen that anybody sees. It ends with the object.
class XServer {
 public:
  // Waits until it takes clients; the test fails when it does not start.
  XServer();

  const std::string& display() const { return fDisplay; }  // ":7"; empty when it did not start

  // Gives it a keyboard layout by the arguments of setxkbmap.
  void setLayout(std::vector<std::string> arguments) const;

  // Lets it hang without closing anything, and go on.
  void freeze() const { fProcess.send(SIGSTOP); }
  void thaw() const { fProcess.send(SIGCONT); }
  // Ends it and with it every connection.
  void stop() { fProcess.kill(); }

 private:
  ChildProcess fProcess;
  std::string fDisplay;
};

}  // namespace veltrix::testing
