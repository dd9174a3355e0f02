#include "helper/seat_watch.h"

#include <sys/epoll.h>
#include <systemd/sd-login.h>

#include <cstdlib>
#include <string>

#include "util/system_error.h"

namespace veltrix {

namespace {

int seatChanged(sd_event_source* /*source*/, int /*descriptor*/, std::uint32_t /*events*/, void* watch) {
  static_cast<SeatWatch*>(watch)->changed();
  return 0;
}

// A program that the service manager of the user has started is in no session, but may know of one.
std::string ownSession() {
  char* session = nullptr;
  if (sd_pid_get_session(0, &session) >= 0) {
    const std::unique_ptr<char, decltype(&std::free)> owner(session, &std::free);
    return session;
  }
  const char* known = std::getenv("XDG_SESSION_ID");
  return known != nullptr ? known : "";
}

}  // namespace

void SeatMonitorReleaser::operator()(sd_login_monitor* monitor) const {
  sd_login_monitor_unref(monitor);
}

Status SeatWatch::start(sd_event* loop) {
  sd_login_monitor* monitor = nullptr;
  int result = sd_login_monitor_new("seat", &monitor);
  fMonitor.reset(monitor);
  sd_event_source* source = nullptr;
  if (result >= 0) {
    const auto events = static_cast<std::uint32_t>(sd_login_monitor_get_events(monitor));
    result = sd_event_add_io(loop, &source, sd_login_monitor_get_fd(monitor), events, seatChanged, this);
  }
  fSource.reset(source);
  return result < 0 ? Status(systemError(-result, "watch", "the seats")) : Done{};
}

void SeatWatch::changed() {
  sd_login_monitor_flush(fMonitor.get());
  fChanged();
}

bool ownSessionIsActive() {
  const std::string session = ownSession();
  return session.empty() || sd_session_is_active(session.c_str()) != 0;
}

}  // namespace veltrix
