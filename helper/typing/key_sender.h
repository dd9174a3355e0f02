#pragma once

#include "driverlink/packets.h"

namespace veltrix {

// The way of keys to the driver.
class KeySender {
 public:
  virtual ~KeySender() = default;
  // Each is false when there is no driver that takes it. No answer comes from within the call.
  virtual bool typeKeys(const TypeKeysPacket& packet) = 0;
  virtual bool stopTyping() = 0;
  // The driver does not do what it should: ends the connection, at which the driver releases every key.
  virtual void hangUp() = 0;
};

}  // namespace veltrix
