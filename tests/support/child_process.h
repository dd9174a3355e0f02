#pragma once

#include <sys/types.h>

#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace veltrix::testing {

// What to change in the environment of a child; a variable without a value is removed.
using EnvironmentChanges = std::map<std::string, std::optional<std::string>>;

// A program under test. It never outlives the object, nor the test program.
class ChildProcess {
 public:
  // Starts `arguments[0]`, found along PATH; standard output and error are kept for output().
  explicit ChildProcess(std::vector<std::string> arguments, const EnvironmentChanges& environment = {});
  ~ChildProcess();
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  pid_t pid() const { return fPid; }
  void send(int signal) const;

  // The exit status, or 128 plus the signal that ended it; nothing when it still runs after `timeout`.
  std::optional<int> waitForExit(std::chrono::milliseconds timeout);

  // Ends it at once, whatever it is doing.
  void kill();

  // Everything that it has written so far.
  std::string output() const;

 private:
  pid_t fPid = -1;
  int fOutput = -1;
  std::optional<int> fExit;
};

}  // namespace veltrix::testing
