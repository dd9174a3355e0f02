#pragma once

#include <cstddef>
#include <cstring>
#include <optional>
#include <span>

#include "driverlink/packets.h"

namespace veltrix {

// Whether every field of a packet of the right size, version and kind has a value that its description
// allows.
bool isValid(const ApplyPacket& packet) noexcept;
bool isValid(const WithdrawPacket& packet) noexcept;
bool isValid(const TypeKeysPacket& packet) noexcept;
bool isValid(const StopTypingPacket& packet) noexcept;
bool isValid(const MovePointerPacket& packet) noexcept;
bool isValid(const MonitorPacket& packet) noexcept;
bool isValid(const StatusPacket& packet) noexcept;
bool isValid(const DeviceStatePacket& packet) noexcept;
bool isValid(const ButtonPacket& packet) noexcept;
bool isValid(const KeysTypedPacket& packet) noexcept;
bool isValid(const LampsPacket& packet) noexcept;

// The kind that a message says it is; nothing when it is too short for a header or of another version. Says
// nothing of the rest of the message.
std::optional<PacketKind> packetKind(std::span<const std::byte> message) noexcept;

// The message as a packet of that kind; nothing unless version, kind, size and every field are right.
template <class Packet>
std::optional<Packet> readPacket(std::span<const std::byte> message) noexcept {
  if (packetKind(message) != Packet::kKind || message.size() != sizeof(Packet))
    return std::nullopt;
  Packet packet;
  std::memcpy(&packet, message.data(), sizeof packet);
  return isValid(packet) ? std::optional<Packet>(packet) : std::nullopt;
}

// An empty packet with its header filled in.
template <class Packet>
Packet makePacket() noexcept {
  Packet packet{};
  packet.header = {.version = kDriverProtocolVersion, .kind = static_cast<std::uint16_t>(Packet::kKind)};
  return packet;
}

}  // namespace veltrix
