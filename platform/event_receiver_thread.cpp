#include <pthread.h>
#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <systemd/sd-bus.h>
#include <unistd.h>

#include <csignal>

#include "platform/event_loop.h"
#include "platform/event_receiver.h"

namespace veltrix {

namespace {

int raiseFlag(sd_event_source* /*source*/, int /*descriptor*/, std::uint32_t /*events*/, void* flag) {
  *static_cast<bool*>(flag) = true;
  return 0;
}

EventLoopHandle makeStoppableLoop(int stopSignal, bool* stopped) {
  EventLoopHandle loop = makeEventLoop();
  if (loop != nullptr && sd_event_add_io(loop.get(), nullptr, stopSignal, EPOLLIN, raiseFlag, stopped) < 0) {
    return nullptr;
  }
  return loop;
}

// Both requests wait for the connection by themselves. A name that another instance has is queued for: it
// comes to this process when that one ends.
bool requestNames(sd_bus* bus, const std::string& application) {
  const ProcessSerialNumber self{.startTime = 0, .pid = static_cast<std::uint32_t>(getpid())};
  return sd_bus_request_name_async(bus, nullptr, EventAddress(application, self).busName().c_str(),
                                   SD_BUS_NAME_QUEUE, nullptr, nullptr) >= 0 &&
         sd_bus_request_name_async(bus, nullptr, EventAddress(application).busName().c_str(),
                                   SD_BUS_NAME_QUEUE, nullptr, nullptr) >= 0;
}

}  // namespace

EventReceiverThread::EventReceiverThread(std::string application, EventHandler handler,
                                         std::string busAddress)
    : fApplication(std::move(application)),
      fHandler(std::move(handler)),
      fBusAddress(std::move(busAddress)),
      fStopSignal(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
  if (fStopSignal < 0)
    return;
  // The process's signals are the main thread's business.
  sigset_t all;
  sigset_t former;
  sigfillset(&all);
  pthread_sigmask(SIG_SETMASK, &all, &former);
  fThread = std::thread([this] { run(); });
  pthread_sigmask(SIG_SETMASK, &former, nullptr);
}

EventReceiverThread::~EventReceiverThread() {
  if (fStopSignal < 0)
    return;
  eventfd_write(fStopSignal, 1);
  fThread.join();
  close(fStopSignal);
}

void EventReceiverThread::run() {
  bool stopped = false;
  const EventLoopHandle loop = makeStoppableLoop(fStopSignal, &stopped);
  if (loop == nullptr)
    return;
  const Result<BusHandle> bus = startSessionBus(fBusAddress);
  if (!bus)
    return;
  sd_bus* connection = bus.value().get();
  const auto receiver = EventReceiver::onBus(connection, fHandler);
  if (!receiver || !requestNames(connection, fApplication))
    return;
  if (sd_bus_set_exit_on_disconnect(connection, 1) < 0 ||
      sd_bus_attach_event(connection, loop.get(), SD_EVENT_PRIORITY_NORMAL) < 0) {
    return;
  }
  runEventLoop(loop.get(), &stopped);
  sd_bus_detach_event(connection);
}

}  // namespace veltrix
