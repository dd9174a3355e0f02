#include "driver/request_reader.h"

#include "driverlink/packet_rules.h"

namespace veltrix {

namespace {

// Whether the message is such a packet and `carryOut` has nothing against it.
template <class Packet, class Action>
bool handOver(std::span<const std::byte> message, Action carryOut) noexcept {
  const auto packet = readPacket<Packet>(message);
  return packet && carryOut(*packet);
}

}  // namespace

bool RequestReader::take(std::span<const std::byte> message, Microseconds now) noexcept {
  const auto kind = packetKind(message);
  if (!kind || !fLimit.take(now))
    return false;
  switch (*kind) {
    case PacketKind::kApply:
      return handOver<ApplyPacket>(message, [this](const auto& packet) noexcept {
        fRequests.apply(packet);
        return true;
      });
    case PacketKind::kWithdraw:
      return handOver<WithdrawPacket>(message, [this](const auto& packet) noexcept {
        fRequests.withdraw(packet);
        return true;
      });
    case PacketKind::kTypeKeys:
      return handOver<TypeKeysPacket>(
          message, [this](const auto& packet) noexcept { return fRequests.typeKeys(packet); });
    case PacketKind::kStopTyping:
      return handOver<StopTypingPacket>(message, [this](const auto& /*packet*/) noexcept {
        fRequests.stopTyping();
        return true;
      });
    case PacketKind::kMovePointer:
      return handOver<MovePointerPacket>(message, [this](const auto& packet) noexcept {
        fRequests.movePointer(packet);
        return true;
      });
    case PacketKind::kMonitor:
      return handOver<MonitorPacket>(message, [this](const auto& packet) noexcept {
        fRequests.monitor(packet.wanted == 1);
        return true;
      });
    default:
      return false;  // what only the driver says, and what nobody does
  }
}

}  // namespace veltrix
