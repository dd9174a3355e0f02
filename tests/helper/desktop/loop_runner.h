#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <optional>

#include "helper/commands/command_session.h"
#include "platform/event_loop.h"

namespace veltrix::testing {

// A loop of the test's own thread.
class LoopRunner {
 public:
  sd_event* get() const { return fLoop.get(); }

  // Serves the loop until the condition holds; false when it does not within ten seconds.
  bool runUntil(const std::function<bool()>& condition) const {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!condition()) {
      if (std::chrono::steady_clock::now() > end) {
        return false;
      }
      sd_event_run(fLoop.get(), 20'000);
    }
    return true;
  }

  // Begins something and serves the loop until it has ended; a failure of the test when it never does.
  Status run(const std::function<void(Ended)>& begin) const {
    std::optional<Status> outcome;
    begin([&outcome](const Status& status) {
      EXPECT_FALSE(outcome) << "it ended twice";
      outcome = status;
    });
    if (!runUntil([&] { return outcome.has_value(); })) {
      ADD_FAILURE() << "it never ended";
      return Error{0, "never ended", {}};
    }
    return *outcome;
  }

 private:
  EventLoopHandle fLoop = makeEventLoop();
};

// "done", or the reason.
inline std::string wordOf(const Status& status) {
  return status ? "done" : status.error().message;
}

}  // namespace veltrix::testing
