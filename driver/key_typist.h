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

  // Whether the next step belongs to a packet that a key of a keyboard stops.
  bool isStoppable() const noexcept { return fPacket && fPacket->stoppable != 0; }

  // Gives up the packet that is being typed; to be called until it returns nothing.
  std::optional<KeysTypedPacket> giveUp(TypingOutcome outcome) noexcept;

  // Gives up the first stoppable packet; to be called until it returns nothing.
  std::optional<KeysTypedPacket> stop() noexcept;

  // Lets go of every key that is down, as one group.
  void release(Output& output) noexcept;
  // The same with those that stoppable packets have pressed.
  void releaseStopped(Output& output) noexcept;

 private:
  static constexpr std::size_t kKeys = 248;
  using Keys = std::bitset<kKeys>;

  KeysTypedPacket finish(TypingOutcome outcome) noexcept;
  void carryOut(const KeyStep& step, Output& output) noexcept;
  void release(const Keys& keys, Output& output) noexcept;

  std::optional<TypeKeysPacket> fPacket;
  std::optional<TypeKeysPacket> fWaiting;
  std::uint16_t fDone = 0;  // steps of fPacket
  Microseconds fDue{};
  Keys fDown;
  Keys fDownByStoppable;
};

}  // namespace veltrix
