#pragma once

#include <memory>

#include "driver/active_user.h"
#include "driver/poll_loop.h"

struct sd_login_monitor;

namespace veltrix {

struct LoginMonitorReleaser {
  void operator()(sd_login_monitor* monitor) const;
};

// The user of the active session of seat0, as the login service has it. Without a login service or a seat
// there is none, which is said on standard error once.
class LoginActiveUser final : public ActiveUser, private PollHandler {
 public:
  // The loop must outlive the object.
  explicit LoginActiveUser(PollLoop& loop) noexcept : fLoop(loop) {}
  ~LoginActiveUser() override;
  LoginActiveUser(const LoginActiveUser&) = delete;
  LoginActiveUser& operator=(const LoginActiveUser&) = delete;

  std::optional<uid_t> current() noexcept override;
  void setListener(ActiveUserListener* listener) noexcept override;

 private:
  void ready(std::uint32_t events) noexcept override;
  void watch() noexcept;
  void complain(int error) noexcept;

  PollLoop& fLoop;
  ActiveUserListener* fListener = nullptr;
  std::unique_ptr<sd_login_monitor, LoginMonitorReleaser> fMonitor;
  bool fComplained = false;
};

}  // namespace veltrix
