#include "driver/key_typist.h"

#include <algorithm>
#include <chrono>

#include "driverlink/packet_rules.h"

namespace veltrix {

bool KeyTypist::take(const TypeKeysPacket& packet, Microseconds now) noexcept {
  if (fWaiting)
    return false;
  if (fPacket) {
    fWaiting = packet;
    return true;
  }
  fPacket = packet;
  fDone = 0;
  fDue = std::max(fDue, now);  // not sooner after the last step of the packet before than that one asked for
  return true;
}

std::optional<KeysTypedPacket> KeyTypist::expire(Microseconds now, Output& output) noexcept {
  if (!fPacket || now < fDue)
    return std::nullopt;
  const KeyStep& step = fPacket->step[fDone];
  const bool down = step.down != 0;
  if (step.code < kKeys && fDown[step.code] != down) {
    fDown[step.code] = down;
    output.key(step.code, down);
    output.sync();
  }
  ++fDone;
  // From now, not from when it was due: programs that could not follow are not to be hurried.
  fDue = now + std::chrono::milliseconds(fPacket->interval);
  if (fDone < fPacket->count)
    return std::nullopt;
  return finish(TypingOutcome::kTyped);
}

std::optional<KeysTypedPacket> KeyTypist::giveUp(TypingOutcome outcome) noexcept {
  if (!fPacket)
    return std::nullopt;
  return finish(outcome);
}

void KeyTypist::release(Output& output) noexcept {
  for (std::size_t code = 0; code < kKeys; ++code) {
    if (fDown[code])
      output.key(static_cast<std::uint16_t>(code), false);
  }
  output.sync();
  fDown.reset();
}

KeysTypedPacket KeyTypist::finish(TypingOutcome outcome) noexcept {
  auto answer = makePacket<KeysTypedPacket>();
  answer.id = fPacket->id;
  answer.count = fDone;
  answer.outcome = static_cast<std::uint16_t>(outcome);
  fPacket = fWaiting;
  fWaiting.reset();
  fDone = 0;
  return answer;
}

}  // namespace veltrix
