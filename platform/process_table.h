#pragma once

#include <sys/types.h>
#include <unistd.h>

#include <cstdint>
#include <memory>
#include <string>

namespace veltrix {

// Names one process for as long as it lives: a pid that is used again later belongs to another serial number.
// Both words 0 stand for no process.
struct ProcessSerialNumber {
  std::uint32_t startTime = 0;  // low 32 bits of the start time in clock ticks since boot
  std::uint32_t pid = 0;
  friend bool operator==(const ProcessSerialNumber&, const ProcessSerialNumber&) = default;
};

inline constexpr std::int16_t kProcessNotFound = -600;

// The user's running processes in rising order of their pid. Not thread-safe; one walk at a time.
class ProcessTable {
 public:
  virtual ~ProcessTable() = default;

  // Moves `psn` to the process after it (no process: to the first). 0, or kProcessNotFound after the last
  // one, which leaves `psn` at no process. Starting from no process takes a new look at the system.
  virtual std::int16_t nextProcess(ProcessSerialNumber* psn) = 0;

  // The name that the kernel keeps for the process (at most 15 bytes); for the process that nextProcess gave
  // last, the name that it had then. 0, or kProcessNotFound when it has gone.
  virtual std::int16_t processName(const ProcessSerialNumber& psn, std::string* name) = 0;
};

// Reads `root` (/proc) and lists the processes of `user`. One that has ended and waits to be collected by its
// parent does not run.
std::unique_ptr<ProcessTable> makeProcessTable(const std::string& root = "/proc", uid_t user = geteuid());

// Whether the process of that serial number still runs.
bool processRuns(const ProcessSerialNumber& psn);

// The serial number of this process.
ProcessSerialNumber currentProcess();

}  // namespace veltrix
