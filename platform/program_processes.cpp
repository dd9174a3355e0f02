#include "platform/program_processes.h"

#include <poll.h>
#include <signal.h>

// This header of the C library does not say by itself that it is one.
extern "C" {
#include <sys/pidfd.h>
}

#include <cerrno>
#include <filesystem>
#include <system_error>

#include "util/file_descriptor.h"
#include "util/system_error.h"

namespace veltrix {

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

// What the kernel writes behind the path of a file that is not there any more.
constexpr std::string_view kDeleted = " (deleted)";

std::string programOfProcess(const ProcessSerialNumber& process) {
  std::error_code error;
  std::string path = fs::read_symlink("/proc/" + std::to_string(process.pid) + "/exe", error).string();
  if (path.ends_with(kDeleted)) {
    path.resize(path.size() - kDeleted.size());
  }
  return path;
}

// Whether the process ends before the deadline.
bool endsBefore(const FileDescriptor& process, Clock::time_point deadline) {
  pollfd waiting = {process.get(), POLLIN, 0};
  for (;;) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
    const int ready = poll(&waiting, 1, left > 0 ? static_cast<int>(left) : 0);
    if (ready > 0) {
      return true;
    }
    if ((ready < 0 && errno != EINTR) || left <= 0) {
      return false;
    }
  }
}

}  // namespace

std::vector<ProcessSerialNumber> processesOfProgram(const std::string& program) {
  std::error_code error;
  const std::string wanted = fs::weakly_canonical(program, error).string();
  std::vector<ProcessSerialNumber> found;
  const auto table = makeProcessTable();
  for (ProcessSerialNumber process; !wanted.empty() && table->nextProcess(&process) == 0;) {
    if (programOfProcess(process) == wanted) {
      found.push_back(process);
    }
  }
  return found;
}

Status endProcess(const ProcessSerialNumber& process, std::chrono::milliseconds patience) {
  const auto deadline = Clock::now() + patience;
  const std::string name = "process " + std::to_string(process.pid);
  const FileDescriptor handle(pidfd_open(static_cast<pid_t>(process.pid), 0));
  if (!handle && errno != ESRCH) {
    return systemError(errno, "cannot end", name);
  }
  // The handle stays with what has the pid now; whether that is still the same one can be seen only now.
  if (!handle || !processRuns(process)) {
    return Done();
  }
  if (pidfd_send_signal(handle.get(), SIGTERM, nullptr, 0) != 0) {
    return errno == ESRCH ? Status(Done()) : Status(systemError(errno, "cannot end", name));
  }
  return endsBefore(handle, deadline) ? Status(Done()) : Status(systemError(ETIMEDOUT, "cannot end", name));
}

}  // namespace veltrix
