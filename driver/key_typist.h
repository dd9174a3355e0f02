#pragma once

#include <bitset>
#include <cstddef>
#include <optional>

#include "driver/engine/engine_types.h"
#include "driver/engine/output.h"
#include "driverlink/packets.h"

namespace veltrix {

// Types what the helper asks for, one step after the other, each at its time. One packet may wait while
// another is typed. Time never goes back.
class KeyTypist {
 public:
  // False, with nothing changed, when a packet waits already.
  bool take(const TypeKeysPacket& packet, Microseconds now) noexcept;

  // When expire() is to be called next; kNever when there is nothing to type.
  Microseconds deadline() const noexcept { return fPacket ? fDue : kNever; }

  // Adds the step that is due, one at most, as a group to the output. Returns the answer to the packet of
  // which it was the last one.
  std::optional<KeysTypedPacket> expire(Microseconds now, Output& output) noexcept;

  // Gives up the packet that is being typed; to be called until it returns nothing.
  std::optional<KeysTypedPacket> giveUp(TypingOutcome outcome) noexcept;

  // Lets go of every key that is down, as one group.
  void release(Output& output) noexcept;

 private:
  static constexpr std::size_t kKeys = 248;

  KeysTypedPacket finish(TypingOutcome outcome) noexcept;

  std::optional<TypeKeysPacket> fPacket;
  std::optional<TypeKeysPacket> fWaiting;
  std::uint16_t fDone = 0;  // steps of fPacket
  Microseconds fDue{};
  std::bitset<kKeys> fDown;
};

}  // namespace veltrix
