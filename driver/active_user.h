#pragma once

#include <sys/types.h>

#include <optional>

namespace veltrix {

// Somebody who wants to know when another user comes to the screen.
class ActiveUserListener {
 public:
  virtual ~ActiveUserListener() = default;
  virtual void activeUserChanged() noexcept = 0;
};

// The user at the screen that the trackballs belong to.
class ActiveUser {
 public:
  virtual ~ActiveUser() = default;
  // Nothing when nobody is there, or when it cannot be told.
  virtual std::optional<uid_t> current() noexcept = 0;
  // At most one at a time, null for none; told after the change. Must outlive that.
  virtual void setListener(ActiveUserListener* listener) noexcept = 0;
};

}  // namespace veltrix
