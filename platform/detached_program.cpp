#include "platform/detached_program.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>

#include "util/file_descriptor.h"
#include "util/system_error.h"

namespace veltrix {

namespace {

constexpr int kFirstFreeDescriptor = 3;  // behind the three standard ones
constexpr int kExecFailed = 127;

// Moves a new descriptor out of the way of standard input, output and errors, which this process may lack.
FileDescriptor awayFromStandard(FileDescriptor file) {
  if (!file || file.get() >= kFirstFreeDescriptor) {
    return file;
  }
  return FileDescriptor(fcntl(file.get(), F_DUPFD_CLOEXEC, kFirstFreeDescriptor));
}

// Everything below runs between fork and exec of a process with threads: only calls that a signal handler
// may make.

void giveStandardSignals() {
  struct sigaction standard = {};
  standard.sa_handler = SIG_DFL;
  for (int number = 1; number < NSIG; ++number) {
    sigaction(number, &standard, nullptr);  // fails for the few that cannot be changed
  }
  sigset_t none;
  sigemptyset(&none);
  sigprocmask(SIG_SETMASK, &none, nullptr);
}

[[noreturn]] void reportAndExit(int report) {
  const int code = errno;
  [[maybe_unused]] const ssize_t written = write(report, &code, sizeof code);
  _exit(kExecFailed);
}

[[noreturn]] void becomeProgram(char* const* arguments, int input, int report) {
  giveStandardSignals();
  if (dup2(input, STDIN_FILENO) < 0) {
    reportAndExit(report);
  }
  // What this process has open must not live on with a program that outlives it.
  close_range(kFirstFreeDescriptor, ~0U, CLOSE_RANGE_CLOEXEC);
  execv(arguments[0], arguments);
  reportAndExit(report);
}

// The process in between ends at once, so that the program becomes nobody's child here.
[[noreturn]] void startAndExit(char* const* arguments, int input, int report) {
  setsid();
  const pid_t pid = fork();
  if (pid < 0) {
    reportAndExit(report);
  }
  if (pid == 0) {
    becomeProgram(arguments, input, report);
  }
  _exit(0);
}

// Forks with all signals blocked: a handler of this process must not run in the child.
pid_t forkWithoutSignals() {
  sigset_t all;
  sigset_t old;
  sigfillset(&all);
  pthread_sigmask(SIG_SETMASK, &all, &old);
  const pid_t pid = fork();
  if (pid != 0) {
    const int code = errno;
    pthread_sigmask(SIG_SETMASK, &old, nullptr);
    errno = code;
  }
  return pid;
}

void collect(pid_t pid) {
  while (waitpid(pid, nullptr, 0) < 0 && errno == EINTR) {
  }
}

// 0 when the program was executed: its end of the pipe then closed without a word.
int readReport(const FileDescriptor& report) {
  int code = 0;
  ssize_t count = 0;
  do {
    count = read(report.get(), &code, sizeof code);
  } while (count < 0 && errno == EINTR);
  return count == static_cast<ssize_t>(sizeof code) ? code : 0;
}

// As exec takes them. They point into `arguments`.
std::vector<char*> pointersTo(const std::vector<std::string>& arguments) {
  std::vector<char*> pointers;
  pointers.reserve(arguments.size() + 1);
  for (const std::string& argument : arguments) {
    pointers.push_back(const_cast<char*>(argument.c_str()));
  }
  pointers.push_back(nullptr);
  return pointers;
}

}  // namespace

Status startDetached(const std::vector<std::string>& arguments) {
  const std::string program = arguments.empty() ? std::string() : arguments.front();
  const std::vector<char*> pointers = pointersTo(arguments);
  const FileDescriptor input = awayFromStandard(FileDescriptor(open("/dev/null", O_RDONLY | O_CLOEXEC)));
  std::array<int, 2> ends = {};
  if (program.empty() || !input || pipe2(ends.data(), O_CLOEXEC) != 0) {
    return systemError(program.empty() ? ENOENT : errno, "cannot start", program);
  }
  FileDescriptor report = awayFromStandard(FileDescriptor(ends[0]));
  FileDescriptor childsReport = awayFromStandard(FileDescriptor(ends[1]));
  if (!report || !childsReport) {
    return systemError(errno, "cannot start", program);
  }
  const pid_t pid = forkWithoutSignals();
  if (pid < 0) {
    return systemError(errno, "cannot start", program);
  }
  if (pid == 0) {
    startAndExit(pointers.data(), input.get(), childsReport.get());
  }
  childsReport.reset();
  collect(pid);
  if (const int code = readReport(report); code != 0) {
    return systemError(code, "cannot start", program);
  }
  return Done();
}

std::string programInPath(std::string_view name) {
  const char* variable = std::getenv("PATH");
  std::string_view folders = variable != nullptr ? variable : "";
  while (!folders.empty()) {
    const std::size_t end = folders.find(':');
    std::string path = std::string(folders.substr(0, end)) + "/" + std::string(name);
    folders.remove_prefix(end == std::string_view::npos ? folders.size() : end + 1);
    struct stat attributes = {};
    if (path.front() == '/' && stat(path.c_str(), &attributes) == 0 && S_ISREG(attributes.st_mode) &&
        access(path.c_str(), X_OK) == 0) {
      return path;
    }
  }
  return "";
}

}  // namespace veltrix
