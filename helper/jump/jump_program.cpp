#include "helper/jump/jump_program.h"

#include <signal.h>
#include <spawn.h>
#include <sys/epoll.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>

namespace veltrix {

namespace {

constexpr std::uint64_t kTimerPrecision = 50'000;  // microseconds
constexpr int kMostReadAtOnce = 16;

int onMessage(sd_event_source* /*source*/, int /*descriptor*/, std::uint32_t /*events*/, void* program) {
  static_cast<JumpProgram*>(program)->readSome();
  return 0;
}

int onEnd(sd_event_source* /*source*/, int /*descriptor*/, std::uint32_t /*events*/, void* program) {
  static_cast<JumpProgram*>(program)->ended();
  return 0;
}

int onTime(sd_event_source* /*source*/, std::uint64_t /*time*/, void* program) {
  static_cast<JumpProgram*>(program)->startAgain();
  return 0;
}

// What the program is to have otherwise than this process: the socket as its input, and signals as usual.
class SpawnPlan {
 public:
  explicit SpawnPlan(int socket) {
    posix_spawn_file_actions_init(&fActions);
    posix_spawn_file_actions_adddup2(&fActions, socket, STDIN_FILENO);
    posix_spawnattr_init(&fAttributes);
    sigset_t signals;
    sigemptyset(&signals);
    posix_spawnattr_setsigmask(&fAttributes, &signals);
    sigaddset(&signals, SIGPIPE);
    posix_spawnattr_setsigdefault(&fAttributes, &signals);
    posix_spawnattr_setflags(&fAttributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
  }
  ~SpawnPlan() {
    posix_spawnattr_destroy(&fAttributes);
    posix_spawn_file_actions_destroy(&fActions);
  }
  SpawnPlan(const SpawnPlan&) = delete;
  SpawnPlan& operator=(const SpawnPlan&) = delete;

  // 0 or an errno value.
  int run(const std::string& path, pid_t* pid) const {
    std::array<char*, 2> arguments = {const_cast<char*>(path.c_str()), nullptr};
    return posix_spawn(pid, path.c_str(), &fActions, &fAttributes, arguments.data(), environ);
  }

 private:
  posix_spawn_file_actions_t fActions{};
  posix_spawnattr_t fAttributes{};
};

}  // namespace

const char* jumpStateText(JumpState state) {
  switch (state) {
    case JumpState::kOff:
      return "off";
    case JumpState::kStarting:
      return "starting";
    case JumpState::kListening:
      return "listening";
    case JumpState::kFailed:
      break;
  }
  return "failed";
}

const char* jumpOutcomeText(std::uint32_t outcome) {
  constexpr std::array kTexts = {"", "moved", "already-there", "button-held", "no-button", "out-of-window"};
  return outcome < kTexts.size() ? kTexts.at(outcome) : "";
}

JumpProgram::JumpProgram(sd_event* loop, std::string path, std::function<void(const JumpReport&)> changed)
    : fLoop(loop), fPath(std::move(path)), fChanged(std::move(changed)) {}

JumpProgram::~JumpProgram() {
  stop();
  collect();
}

void JumpProgram::setWanted(bool wanted) {
  if (wanted == fWanted)
    return;
  fWanted = wanted;
  fTimer.reset();
  fDelay.reset();
  if (!wanted) {
    stop();
    announce(JumpState::kOff);
  } else if (fPid == 0) {
    startAgain();
  }  // else the former one has not ended yet, which starts the next
}

void JumpProgram::startAgain() {
  if (const int problem = start(); problem != 0) {
    std::fprintf(stderr, "VeltrixHelper: cannot start %s: %s\n", fPath.c_str(), std::strerror(problem));
    stop();
    collect();
    retryLater();
  } else {
    announce(JumpState::kStarting);
  }
}

int JumpProgram::start() {
  std::array<int, 2> ends = {-1, -1};
  if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()) != 0)
    return errno;
  fSocket.reset(ends[0]);
  const FileDescriptor programsEnd(ends[1]);
  if (const int problem = SpawnPlan(programsEnd.get()).run(fPath, &fPid); problem != 0) {
    fPid = 0;
    return problem;
  }
  fStartedAt = Clock::now();
  fProcess.reset(static_cast<int>(syscall(SYS_pidfd_open, fPid, 0)));
  return fProcess && watch() ? 0 : errno;
}

bool JumpProgram::watch() {
  sd_event_source* ending = nullptr;
  sd_event_source* reading = nullptr;
  const bool watched = sd_event_add_io(fLoop, &ending, fProcess.get(), EPOLLIN, onEnd, this) >= 0 &&
                       sd_event_add_io(fLoop, &reading, fSocket.get(), EPOLLIN, onMessage, this) >= 0;
  fEnding.reset(ending);
  fReading.reset(reading);
  return watched;
}

void JumpProgram::readSome() {
  JumpMessage message{};
  for (int i = 0; i < kMostReadAtOnce; ++i) {
    const ssize_t size = recv(fSocket.get(), &message, sizeof message, MSG_DONTWAIT | MSG_TRUNC);
    if (size < 0 && (errno == EAGAIN || errno == EINTR))
      return;
    if (size <= 0) {
      fReading.reset();  // it is about to end
      return;
    }
    if (size != sizeof message)
      continue;
    if (message.kind == kJumpMessageReady) {
      announce(JumpState::kListening);
    } else if (message.kind == kJumpMessageDialog) {
      ++fReport.dialogs;
      fReport.outcome = message.outcome;
      fChanged(fReport);
    }
  }
}

void JumpProgram::ended() {
  const bool wasStopped = fStopped;
  collect();
  if (!fWanted)
    return;
  if (wasStopped)
    startAgain();
  else
    retryLater();
}

// It keeps nothing that it would have to put in order, so it is not asked. The loop waits for its end.
void JumpProgram::stop() {
  fReading.reset();
  fSocket.reset();
  if (fPid != 0)
    ::kill(fPid, SIGKILL);
  fStopped = fPid != 0;
}

void JumpProgram::collect() {
  fReading.reset();
  fSocket.reset();
  fEnding.reset();
  fProcess.reset();
  if (fPid != 0)
    waitpid(fPid, nullptr, WNOHANG);
  fPid = 0;
  fStopped = false;
}

void JumpProgram::retryLater() {
  const auto lifetime = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - fStartedAt);
  const std::chrono::microseconds wait = fDelay.next(lifetime);
  sd_event_source* timer = nullptr;
  sd_event_add_time_relative(fLoop, &timer, CLOCK_MONOTONIC, static_cast<std::uint64_t>(wait.count()),
                             kTimerPrecision, onTime, this);
  fTimer.reset(timer);
  announce(JumpState::kFailed);
}

void JumpProgram::announce(JumpState state) {
  if (state == fReport.state)
    return;
  fReport.state = state;
  fChanged(fReport);
}

}  // namespace veltrix
