#include "helper/driver_orders.h"

#include <algorithm>
#include <cstring>

#include "driverlink/packet_rules.h"

namespace veltrix {

namespace {

using Orders = std::vector<ApplyPacket>;

// Without padding, so that the bytes are all there is to it.
static_assert(sizeof(ApplyPacket) ==
              sizeof(PacketHeader) + sizeof(DeviceAddress) + sizeof(DriverRecord) + sizeof(ScrollParameters));

bool areSame(const ApplyPacket& a, const ApplyPacket& b) {
  return std::memcmp(&a, &b, sizeof a) == 0;
}

Orders::const_iterator findOrder(const Orders& orders, const DeviceAddress& device) {
  return std::find_if(orders.begin(), orders.end(),
                      [&](const ApplyPacket& order) { return order.device == device; });
}

bool sameOrders(const Orders& a, const Orders& b) {
  return a.size() == b.size() && std::all_of(a.begin(), a.end(), [&](const ApplyPacket& order) {
           const auto other = findOrder(b, order.device);
           return other != b.end() && areSame(order, *other);
         });
}

template <class Packet>
std::span<const std::byte> bytesOf(const Packet& packet) {
  return std::as_bytes(std::span(&packet, 1));
}

}  // namespace

std::vector<ApplyPacket> driverOrders(const std::vector<ConnectedDevice>& devices) {
  Orders orders;
  for (const ConnectedDevice& device : devices) {
    if (!device.record.record)
      continue;
    const VeltrixDeviceEntry& entry = device.found.entry;
    auto order = makePacket<ApplyPacket>();
    order.device = {entry.vendorID, entry.productID, entry.productVers, 0};
    order.record = *device.record.record;
    order.scroll = device.record.scroll;
    // The driver would take one that is not in order as a reason to listen no more.
    if (isValid(order) && findOrder(orders, order.device) == orders.end())
      orders.push_back(order);
  }
  return orders;
}

void DriverOrders::forget() {
  fTold.clear();
  fNext = Clock::time_point::min();
}

std::optional<DriverOrders::Clock::time_point> DriverOrders::due() const {
  return sameOrders(fWanted, fTold) ? std::nullopt : std::optional(fNext);
}

bool DriverOrders::tell(Clock::time_point now, const Sender& send) {
  if (now < fNext || sameOrders(fWanted, fTold))
    return true;
  fNext = now + kInterval;
  return withdraw(send) && apply(send);
}

bool DriverOrders::withdraw(const Sender& send) {
  for (std::size_t i = fTold.size(); i-- > 0;) {
    if (findOrder(fWanted, fTold[i].device) != fWanted.end())
      continue;
    auto packet = makePacket<WithdrawPacket>();
    packet.device = fTold[i].device;
    if (!send(bytesOf(packet)))
      return false;
    fTold.erase(fTold.begin() + static_cast<std::ptrdiff_t>(i));
  }
  return true;
}

bool DriverOrders::apply(const Sender& send) {
  for (const ApplyPacket& order : fWanted) {
    const auto told = findOrder(fTold, order.device);
    if (told != fTold.end() && areSame(*told, order))
      continue;
    if (!send(bytesOf(order)))
      return false;
    if (told != fTold.end()) {
      fTold[static_cast<std::size_t>(told - fTold.begin())] = order;
    } else {
      fTold.push_back(order);
    }
  }
  return true;
}

}  // namespace veltrix
