#pragma once

#include "driver/active_user.h"

namespace veltrix {

// A user who counts as the one at the screen at all times.
class FixedUser final : public ActiveUser {
 public:
  explicit FixedUser(uid_t user) noexcept : fUser(user) {}
  std::optional<uid_t> current() noexcept override { return fUser; }
  void setListener(ActiveUserListener* /*listener*/) noexcept override {}

 private:
  uid_t fUser;
};

}  // namespace veltrix
