#pragma once

#include <cstddef>
#include <span>

#include "driver/helper_channel.h"
#include "driver/rate_limit.h"

namespace veltrix {

// A drag of a slider writes some fifty records a second for each model and firmware that is plugged in,
// typing a text a hundred packets: the limit is far from both, and what it lets through is no load.
inline constexpr std::uint32_t kRequestBurst = 2000;
inline constexpr std::uint32_t kRequestsPerSecond = 1000;

// The rules of one connection: what a helper may say, and how often.
class RequestReader {
 public:
  explicit RequestReader(HelperRequests& requests) noexcept : fRequests(requests) {}

  // Hands one message on. False when it breaks a rule; the connection is to be ended then.
  bool take(std::span<const std::byte> message, Microseconds now) noexcept;

  // For the next connection.
  void reset() noexcept { fLimit = RateLimit(kRequestBurst, kRequestsPerSecond); }

 private:
  HelperRequests& fRequests;
  RateLimit fLimit{kRequestBurst, kRequestsPerSecond};
};

}  // namespace veltrix
