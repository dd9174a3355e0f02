#pragma once

#include <algorithm>
#include <chrono>

namespace veltrix {

inline constexpr std::chrono::milliseconds kShortestReconnectDelay{250};
inline constexpr std::chrono::milliseconds kLongestReconnectDelay{5000};

// A connection that has held this long was a good one: the next attempts begin anew.
inline constexpr std::chrono::milliseconds kGoodConnection{1000};

// How long to wait before the next attempt to connect: longer each time in vain.
class ReconnectDelay {
 public:
  // The wait after an attempt that failed, or after a connection that held for `lifetime`.
  std::chrono::milliseconds next(std::chrono::milliseconds lifetime = {}) {
    if (lifetime >= kGoodConnection)
      reset();
    const auto delay = fDelay;
    fDelay = std::min(2 * fDelay, kLongestReconnectDelay);
    return delay;
  }
  // There is a reason to hope.
  void reset() { fDelay = kShortestReconnectDelay; }

 private:
  std::chrono::milliseconds fDelay = kShortestReconnectDelay;
};

}  // namespace veltrix
