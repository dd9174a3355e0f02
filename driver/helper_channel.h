#pragma once

#include <cstddef>
#include <span>

#include "driverlink/packets.h"

namespace veltrix {

// The way to the one helper that the driver listens to.
class HelperChannel {
 public:
  virtual ~HelperChannel() = default;
  // One whole packet. Never blocks: a helper that does not read loses its connection. Without a helper
  // nothing happens.
  virtual void send(std::span<const std::byte> packet) noexcept = 0;
};

// What the helper asks for; only valid packets come here.
class HelperRequests {
 public:
  virtual ~HelperRequests() = default;
  // Whether there are a virtual pointer and keyboard; told in every status packet.
  virtual bool hasOutputs() const noexcept = 0;
  // A helper of the active user is connected; the status packet has been sent.
  virtual void helperArrived() noexcept = 0;
  virtual void apply(const ApplyPacket& packet) noexcept = 0;
  virtual void withdraw(const WithdrawPacket& packet) noexcept = 0;
  // False when a packet is being typed and another one waits already, which ends the connection.
  virtual bool typeKeys(const TypeKeysPacket& packet) noexcept = 0;
  virtual void stopTyping() noexcept = 0;
  virtual void movePointer(const MovePointerPacket& packet) noexcept = 0;
  virtual void monitor(bool wanted) noexcept = 0;
  // The connection has ended, by whomever: everything is released, every trackball an ordinary mouse.
  virtual void helperGone() noexcept = 0;
};

}  // namespace veltrix
