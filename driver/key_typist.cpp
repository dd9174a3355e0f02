#include "driver/key_typist.h"

#include <algorithm>
#include <chrono>

#include "driverlink/packet_rules.h"

namespace veltrix {

namespace {

KeysTypedPacket answerTo(const TypeKeysPacket& packet, std::uint16_t done, TypingOutcome outcome) {
  auto answer = makePacket<KeysTypedPacket>();
  answer.id = packet.id;
  answer.count = done;
  answer.outcome = static_cast<std::uint16_t>(outcome);
  return answer;
}

}  // namespace

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
  carryOut(fPacket->step[fDone], output);
  ++fDone;
  // From now, not from when it was due: programs that could not follow are not to be hurried.
  fDue = now + std::chrono::milliseconds(fPacket->interval);
  if (fDone < fPacket->count)
    return std::nullopt;
  return finish(TypingOutcome::kTyped);
}

void KeyTypist::carryOut(const KeyStep& step, Output& output) noexcept {
  const bool down = step.down != 0;
  if (step.code >= kKeys || fDown[step.code] == down)
    return;
  fDown[step.code] = down;
  fDownByStoppable[step.code] = down && fPacket->stoppable != 0;
  output.key(step.code, down);
  output.sync();
}

std::optional<KeysTypedPacket> KeyTypist::stop() noexcept {
  if (isStoppable())
    return finish(TypingOutcome::kStopped);
  if (!fWaiting || fWaiting->stoppable == 0)
    return std::nullopt;
  const KeysTypedPacket answer = answerTo(*fWaiting, 0, TypingOutcome::kStopped);
  fWaiting.reset();
  return answer;
}

std::optional<KeysTypedPacket> KeyTypist::giveUp(TypingOutcome outcome) noexcept {
  if (!fPacket)
    return std::nullopt;
  return finish(outcome);
}

void KeyTypist::release(Output& output) noexcept {
  release(fDown, output);
}

void KeyTypist::releaseStopped(Output& output) noexcept {
  release(fDownByStoppable, output);
}

void KeyTypist::release(const Keys& keys, Output& output) noexcept {
  const Keys meant = keys;
  for (std::size_t code = 0; code < kKeys; ++code) {
    if (meant[code])
      output.key(static_cast<std::uint16_t>(code), false);
  }
  output.sync();
  fDown &= ~meant;
  fDownByStoppable &= ~meant;
}

KeysTypedPacket KeyTypist::finish(TypingOutcome outcome) noexcept {
  const KeysTypedPacket answer = answerTo(*fPacket, fDone, outcome);
  fPacket = fWaiting;
  fWaiting.reset();
  fDone = 0;
  return answer;
}

}  // namespace veltrix
