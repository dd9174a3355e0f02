#include "platform/loop_thread.h"

#include <pthread.h>
#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <csignal>
#include <utility>

namespace veltrix {

namespace {

int raiseFlag(sd_event_source* /*source*/, int /*descriptor*/, std::uint32_t /*events*/, void* flag) {
  *static_cast<bool*>(flag) = true;
  return 0;
}

void runStoppable(int stopSignal, const LoopThread::Run& run) {
  bool stopped = false;
  const EventLoopHandle loop = makeEventLoop();
  if (loop != nullptr && sd_event_add_io(loop.get(), nullptr, stopSignal, EPOLLIN, raiseFlag, &stopped) >= 0)
    run(loop.get(), &stopped);
}

}  // namespace

LoopThread::LoopThread(Run run) : fStopSignal(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
  if (fStopSignal < 0)
    return;
  // The process's signals are the main thread's business.
  sigset_t all;
  sigset_t former;
  sigfillset(&all);
  pthread_sigmask(SIG_SETMASK, &all, &former);
  fThread = std::thread([stopSignal = fStopSignal, run = std::move(run)] { runStoppable(stopSignal, run); });
  pthread_sigmask(SIG_SETMASK, &former, nullptr);
}

LoopThread::~LoopThread() {
  if (fStopSignal < 0)
    return;
  eventfd_write(fStopSignal, 1);
  fThread.join();
  close(fStopSignal);
}

}  // namespace veltrix
