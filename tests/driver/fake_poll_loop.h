#pragma once

#include <poll.h>

#include <cerrno>
#include <map>
#include <vector>

#include "driver/poll_loop.h"

namespace veltrix::testing {

// Real descriptors, looked at when a test says so, and a clock that a test sets.
class FakePollLoop final : public PollLoop {
 public:
  Status add(int descriptor, std::uint32_t /*events*/, PollHandler& handler) override {
    if (refusesMore)
      return Error{ENOSPC, "no room", std::nullopt};
    fHandlers[descriptor] = &handler;
    return Done{};
  }
  void remove(int descriptor) noexcept override { fHandlers.erase(descriptor); }
  Microseconds now() const noexcept override { return time; }

  bool has(int descriptor) const { return fHandlers.count(descriptor) != 0; }
  std::size_t count() const { return fHandlers.size(); }

  // Calls the handler of each that is ready, once; how many there were.
  int runOnce(int milliseconds = 0) {
    std::vector<pollfd> waiting;
    for (const auto& [descriptor, handler] : fHandlers) waiting.push_back({descriptor, POLLIN, 0});
    ::poll(waiting.data(), waiting.size(), milliseconds);
    int called = 0;
    for (const pollfd& one : waiting) {
      const auto found = fHandlers.find(one.fd);
      if (one.revents == 0 || found == fHandlers.end())
        continue;
      ++called;
      found->second->ready(static_cast<std::uint32_t>(one.revents));
    }
    return called;
  }

  // Until nothing is ready any more; a test fails by its limit when something always is.
  void run() {
    for (int i = 0; i < 10000 && runOnce() > 0; ++i) {
    }
  }

  Microseconds time{};
  bool refusesMore = false;

 private:
  std::map<int, PollHandler*> fHandlers;
};

}  // namespace veltrix::testing
