#include "platform/program_start.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <string.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <utility>

#include "util/phrase.h"
#include "util/system_error.h"

namespace veltrix {

namespace {

constexpr int kFirstUnused = kExtraDescriptor + 1;

// What posix_spawn is to do in the child. Remembers the first thing that could not be asked for.
class SpawnPlan {
 public:
  SpawnPlan() {
    keep(posix_spawn_file_actions_init(&fActions));
    keep(posix_spawnattr_init(&fAttributes));
    sigset_t all;
    sigset_t none;
    sigfillset(&all);
    sigemptyset(&none);
    keep(posix_spawnattr_setsigdefault(&fAttributes, &all));
    keep(posix_spawnattr_setsigmask(&fAttributes, &none));
    constexpr int kFlags = POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK;
    keep(posix_spawnattr_setflags(&fAttributes, static_cast<short>(kFlags)));
  }
  ~SpawnPlan() {
    posix_spawn_file_actions_destroy(&fActions);
    posix_spawnattr_destroy(&fAttributes);
  }
  SpawnPlan(const SpawnPlan&) = delete;
  SpawnPlan& operator=(const SpawnPlan&) = delete;

  void enter(const std::string& folder) {
    keep(posix_spawn_file_actions_addchdir_np(&fActions, folder.c_str()));
  }
  void open(int descriptor, const char* path, int flags) {
    keep(posix_spawn_file_actions_addopen(&fActions, descriptor, path, flags, 0));
  }
  // Gives the child `from` as `to`. Copies of its own keep one from taking the place of another.
  void give(int from, int to) {
    fCopies.emplace_back(fcntl(from, F_DUPFD_CLOEXEC, kFirstUnused));
    keep(fCopies.back() ? 0 : errno);
    keep(posix_spawn_file_actions_adddup2(&fActions, fCopies.back().get(), to));
  }
  void closeFrom(int first) { keep(posix_spawn_file_actions_addclosefrom_np(&fActions, first)); }

  int spawn(char* const* arguments, char* const* environment, pid_t* pid) const {
    return fError != 0 ? fError
                       : posix_spawn(pid, arguments[0], &fActions, &fAttributes, arguments, environment);
  }

 private:
  void keep(int error) { fError = fError != 0 ? fError : error; }

  posix_spawn_file_actions_t fActions = {};
  posix_spawnattr_t fAttributes = {};
  std::vector<FileDescriptor> fCopies;
  int fError = 0;
};

void planDescriptors(const ProgramStart& start, SpawnPlan* plan) {
  plan->open(STDIN_FILENO, "/dev/null", O_RDONLY);
  const bool errorsStayOurs = start.output < 0 && start.errors < 0;
  if (start.output >= 0) {
    plan->give(start.output, STDOUT_FILENO);
  }
  if (!errorsStayOurs) {
    plan->give(start.errors >= 0 ? start.errors : start.output, STDERR_FILENO);
  }
  if (start.extra >= 0) {
    plan->give(start.extra, kExtraDescriptor);
  }
  plan->closeFrom(start.extra >= 0 ? kFirstUnused : kExtraDescriptor);
}

// As exec takes them. They point into `texts`.
std::vector<char*> pointersTo(const std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  pointers.reserve(texts.size() + 1);
  for (const std::string& text : texts) {
    pointers.push_back(const_cast<char*>(text.c_str()));
  }
  pointers.push_back(nullptr);
  return pointers;
}

// A NUL would cut an argument short, and the program would be told something else.
bool hasNul(const std::vector<std::string>& texts) {
  return std::any_of(texts.begin(), texts.end(),
                     [](const std::string& text) { return text.find('\0') != std::string::npos; });
}

std::string signalName(int number) {
  const char* const name = sigabbrev_np(number);
  return name != nullptr ? std::string("SIG") + name : std::to_string(number);
}

}  // namespace

Result<StartedProgram> startProgram(const ProgramStart& start) {
  const std::string program = start.arguments.empty() ? std::string() : start.arguments.front();
  if (program.empty() || hasNul(start.arguments) || hasNul(start.environment)) {
    return systemError(program.empty() ? ENOENT : EINVAL, "cannot start", program);
  }
  SpawnPlan plan;
  if (!start.folder.empty()) {
    plan.enter(start.folder);
  }
  planDescriptors(start, &plan);
  StartedProgram started;
  const int code =
      plan.spawn(pointersTo(start.arguments).data(), pointersTo(start.environment).data(), &started.pid);
  if (code != 0) {
    return systemError(code, "cannot start", program);
  }
  // Called directly: the C library's header has no C++ linkage in all versions.
  started.process.reset(static_cast<int>(syscall(SYS_pidfd_open, started.pid, 0)));
  return {std::move(started)};
}

Status collectProgram(const StartedProgram& program) {
  siginfo_t end = {};
  if (waitid(P_PID, static_cast<id_t>(program.pid), &end, WEXITED | WNOHANG) != 0) {
    return systemError(errno, "cannot collect", std::to_string(program.pid));
  }
  if (end.si_pid == 0) {
    return systemError(EAGAIN, "cannot collect", std::to_string(program.pid));
  }
  if (end.si_code != CLD_EXITED) {
    return phrasedError(0, {"signal %1", {given(signalName(end.si_status))}});
  }
  return end.si_status == 0
             ? Status(Done())
             : Status(phrasedError(0, {"exit status %1", {given(std::to_string(end.si_status))}}));
}

}  // namespace veltrix
