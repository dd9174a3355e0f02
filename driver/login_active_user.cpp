#include "driver/login_active_user.h"

#include <sys/epoll.h>
#include <systemd/sd-login.h>

#include <cstdio>
#include <cstring>

namespace veltrix {

namespace {

constexpr const char* kSeat = "seat0";

}  // namespace

void LoginMonitorReleaser::operator()(sd_login_monitor* monitor) const {
  sd_login_monitor_unref(monitor);
}

LoginActiveUser::~LoginActiveUser() {
  if (fMonitor != nullptr)
    fLoop.remove(sd_login_monitor_get_fd(fMonitor.get()));
}

std::optional<uid_t> LoginActiveUser::current() noexcept {
  watch();
  // Somebody who would not be seen to leave is not let in.
  if (fMonitor == nullptr)
    return std::nullopt;
  uid_t user = 0;
  if (sd_seat_get_active(kSeat, nullptr, &user) < 0)
    return std::nullopt;
  return user;
}

void LoginActiveUser::setListener(ActiveUserListener* listener) noexcept {
  fListener = listener;
  watch();
}

void LoginActiveUser::ready(std::uint32_t /*events*/) noexcept {
  sd_login_monitor_flush(fMonitor.get());
  if (fListener != nullptr)
    fListener->activeUserChanged();
}

// Without a login service there is nothing to watch; it may come later, so each question tries again.
void LoginActiveUser::watch() noexcept {
  if (fMonitor != nullptr)
    return;
  sd_login_monitor* monitor = nullptr;
  const int error = sd_login_monitor_new("seat", &monitor);
  if (error < 0) {
    complain(-error);
    return;
  }
  fMonitor.reset(monitor);
  const auto events = static_cast<std::uint32_t>(sd_login_monitor_get_events(monitor));
  const Status added = fLoop.add(sd_login_monitor_get_fd(monitor), events, *this);
  if (!added) {
    fMonitor.reset();
    complain(added.error().code);
  }
}

void LoginActiveUser::complain(int error) noexcept {
  if (fComplained)
    return;
  fComplained = true;
  std::fprintf(stderr, "cannot watch who is at the screen, so nobody is let in: %s\n", std::strerror(error));
}

}  // namespace veltrix
