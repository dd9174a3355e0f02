#include "driver/event_loop.h"

#include <sys/timerfd.h>

#include <algorithm>
#include <cerrno>
#include <ctime>

#include "util/system_error.h"

namespace veltrix {

namespace {

// No deadline is like it, so that the timer is set anew, which takes back that it is ready.
constexpr Microseconds kFired = Microseconds::min();

Microseconds currentTime() noexcept {
  timespec time{};
  clock_gettime(CLOCK_MONOTONIC, &time);
  return std::chrono::seconds(time.tv_sec) + Microseconds{time.tv_nsec / 1000};
}

}  // namespace

Status EventLoop::start() {
  fPoll.reset(epoll_create1(EPOLL_CLOEXEC));
  fTimer.reset(timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC));
  epoll_event timer{};
  timer.events = EPOLLIN;
  timer.data.fd = fTimer.get();
  if (!fPoll || !fTimer || epoll_ctl(fPoll.get(), EPOLL_CTL_ADD, fTimer.get(), &timer) < 0)
    return systemError(errno, "make", "an event loop");
  return Done{};
}

// Reports of trackballs bring their own time, so the clock is read only for those who ask.
Microseconds EventLoop::now() const noexcept {
  if (!fNow)
    fNow = currentTime();
  return *fNow;
}

Status EventLoop::add(int descriptor, std::uint32_t events, PollHandler& handler) {
  epoll_event wanted{};
  wanted.events = events;
  wanted.data.fd = descriptor;
  if (epoll_ctl(fPoll.get(), EPOLL_CTL_ADD, descriptor, &wanted) < 0)
    return systemError(errno, "wait for", "descriptor " + std::to_string(descriptor));
  const auto index = static_cast<std::size_t>(descriptor);
  if (index >= fHandlers.size())
    fHandlers.resize(index + 1);
  fHandlers[index] = &handler;
  return Done{};
}

void EventLoop::remove(int descriptor) noexcept {
  const auto index = static_cast<std::size_t>(descriptor);
  if (descriptor < 0 || index >= fHandlers.size() || fHandlers[index] == nullptr)
    return;
  epoll_ctl(fPoll.get(), EPOLL_CTL_DEL, descriptor, nullptr);
  fHandlers[index] = nullptr;
  // What was reported already is not to reach whoever gets the number next.
  for (std::size_t i = 0; i < fReadyCount; ++i) {
    if (fReady[i].data.fd == descriptor)
      fReady[i].data.fd = -1;
  }
}

Status EventLoop::waitUntil(Microseconds deadline) noexcept {
  arm(deadline);
  const int count = epoll_wait(fPoll.get(), fReady.data(), static_cast<int>(fReady.size()), -1);
  fNow.reset();
  if (count < 0)
    return errno == EINTR ? Status(Done{}) : Status(systemError(errno, "wait for", "events"));
  fReadyCount = static_cast<std::size_t>(count);
  for (std::size_t i = 0; i < fReadyCount; ++i) {
    const int descriptor = fReady[i].data.fd;
    if (descriptor == fTimer.get())
      fArmed = kFired;
    else if (descriptor >= 0)
      fHandlers[static_cast<std::size_t>(descriptor)]->ready(fReady[i].events);
  }
  fReadyCount = 0;
  return Done{};
}

void EventLoop::arm(Microseconds deadline) noexcept {
  if (deadline == fArmed)
    return;
  itimerspec time{};
  if (deadline != kNever) {
    // All zeros would disarm it.
    const Microseconds due = std::max(deadline, Microseconds{1});
    time.it_value.tv_sec = static_cast<time_t>(due.count() / 1'000'000);
    time.it_value.tv_nsec = static_cast<long>(due.count() % 1'000'000 * 1000);
  }
  timerfd_settime(fTimer.get(), TFD_TIMER_ABSTIME, &time, nullptr);
  fArmed = deadline;
}

}  // namespace veltrix
