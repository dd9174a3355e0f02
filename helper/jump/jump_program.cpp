#include "helper/jump/jump_program.h"

#include <signal.h>
#include <sys/epoll.h>
#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <cstdio>

#include "helper/desktop/child_environment.h"
#include "util/system_error.h"

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
  } else if (fProgram.pid <= 0) {
    startAgain();
  }  // else the former one has not ended yet, which starts the next
}

void JumpProgram::startAgain() {
  if (const Status started = start(); !started) {
    std::fprintf(stderr, "VeltrixHelper: %s\n", started.error().message.c_str());
    stop();
    collect();
    retryLater();
  } else {
    announce(JumpState::kStarting);
  }
}

Status JumpProgram::start() {
  std::array<int, 2> ends = {-1, -1};
  if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()) != 0)
    return systemError(errno, "cannot start", fPath);
  fSocket.reset(ends[0]);
  const FileDescriptor programsEnd(ends[1]);
  fStartedAt = Clock::now();
  auto started =
      startProgram({.arguments = {fPath}, .environment = childEnvironment(), .extra = programsEnd.get()});
  if (!started)
    return started.error();
  fProgram = std::move(started.value());
  return watch() ? Status(Done()) : Error{0, "cannot watch " + fPath, std::nullopt};
}

bool JumpProgram::watch() {
  sd_event_source* ending = nullptr;
  sd_event_source* reading = nullptr;
  const bool watched = sd_event_add_io(fLoop, &ending, fProgram.process.get(), EPOLLIN, onEnd, this) >= 0 &&
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
  fStopped = fProgram.pid > 0;
  if (fStopped)
    kill(fProgram.pid, SIGKILL);
}

void JumpProgram::collect() {
  fReading.reset();
  fSocket.reset();
  fEnding.reset();
  if (fProgram.pid > 0)
    collectProgram(fProgram);
  fProgram = StartedProgram();
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
