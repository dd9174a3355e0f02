#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <optional>
#include <span>
#include <vector>

#include "driverlink/packets.h"
#include "helper/helper_core.h"

namespace veltrix {

// The orders for these trackballs, those that are alike once; one without a record has none.
std::vector<ApplyPacket> driverOrders(const std::vector<ConnectedDevice>& devices);

// Remembers what the driver has been told and what it should be told, and tells only what differs.
class DriverOrders {
 public:
  using Clock = std::chrono::steady_clock;
  using Sender = std::function<bool(std::span<const std::byte> packet)>;

  // The first change is told at once, more of them in intervals: a dragged slider changes a record faster
  // than a hand can feel, and the driver bears only so many packets.
  static constexpr std::chrono::milliseconds kInterval{20};

  void want(std::vector<ApplyPacket> orders) { fWanted = std::move(orders); }

  // A new connection: the driver knows nothing yet.
  void forget();

  // When to call tell() next; nothing while there is nothing to say.
  std::optional<Clock::time_point> due() const;

  // Says what differs, unless it is too early for that. False when the sender has returned false; the driver
  // is to be taken as gone then.
  bool tell(Clock::time_point now, const Sender& send);

 private:
  bool withdraw(const Sender& send);
  bool apply(const Sender& send);

  std::vector<ApplyPacket> fWanted;
  std::vector<ApplyPacket> fTold;
  Clock::time_point fNext = Clock::time_point::min();
};

}  // namespace veltrix
