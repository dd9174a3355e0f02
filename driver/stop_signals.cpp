#include "driver/stop_signals.h"

#include <sys/epoll.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <utility>

#include "util/system_error.h"

namespace veltrix {

StopSignals::~StopSignals() {
  if (fFile)
    fLoop.remove(fFile.get());
}

Status StopSignals::start() {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGTERM);
  sigaddset(&signals, SIGINT);
  if (sigprocmask(SIG_BLOCK, &signals, nullptr) < 0)
    return systemError(errno, "block", "signals");
  FileDescriptor file(signalfd(-1, &signals, SFD_NONBLOCK | SFD_CLOEXEC));
  if (!file)
    return systemError(errno, "listen to", "signals");
  Status added = fLoop.add(file.get(), EPOLLIN, *this);
  if (added)
    fFile = std::move(file);
  return added;
}

void StopSignals::ready(std::uint32_t /*events*/) noexcept {
  signalfd_siginfo signal{};
  if (::read(fFile.get(), &signal, sizeof signal) == sizeof signal)
    fCame = true;
}

}  // namespace veltrix
