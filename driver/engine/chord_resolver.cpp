#include "driver/engine/chord_resolver.h"

#include <cstdlib>

// Each button is in one of these states; at most one waits. "Partner" is the other button of its chord.
//
//   state    | event                         | leads to
//   ---------+-------------------------------+--------------------------------------------------------------
//   up       | press, chord does nothing     | alone; button begins
//            | press, partner up             | waiting; nothing yet
//            | press, partner waiting        | both in chord; chord begins
//            | press, partner down otherwise | alone; button begins (the chord can no longer complete)
//            | release                       | nothing
//   waiting  | time over, ball or wheel      | alone; button begins
//            | release                       | up; button begins and ends belatedly
//            | change of any other button    | alone; button begins, before what that change leads to
//   alone    | release                       | up; button ends
//   in chord | release                       | up, partner ignored; chord ends
//   ignored  | release                       | up; nothing
//   any down | press                         | nothing
//            | new record                    | ignored; nothing (whoever plays ends it)
namespace veltrix {

namespace {

constexpr std::uint8_t kChordButtons = 4;

constexpr std::uint8_t partnerOf(std::uint8_t button) {
  return button ^ 1U;
}

constexpr std::uint8_t chordOf(std::uint8_t button) {
  return button < 2 ? kChordOfFirstTwo : kChordOfSecondTwo;
}

}  // namespace

void ChordResolver::configure(bool firstChordActs, bool secondChordActs) noexcept {
  fChordActs = {firstChordActs, secondChordActs};
}

bool ChordResolver::canStartChord(std::uint8_t button) const noexcept {
  return button < kChordButtons && fChordActs[button / 2U] && fState[partnerOf(button)] == State::kUp;
}

VoiceChanges ChordResolver::press(std::uint8_t button, Microseconds now) noexcept {
  if (fState[button] != State::kUp)
    return {};
  if (fWaiting != kNobody && fWaiting == partnerOf(button) && now <= fDeadline) {
    VoiceChanges changes;
    fState[button] = fState[fWaiting] = State::kInChord;
    fWaiting = kNobody;
    changes.addBegin(chordOf(button));
    return changes;
  }
  VoiceChanges changes = endWait();
  if (canStartChord(button)) {
    fState[button] = State::kWaiting;
    fWaiting = button;
    fDeadline = now + kChordTime;
    fMoved = 0;
    return changes;
  }
  fState[button] = State::kAlone;
  changes.addBegin(voiceOfButton(button));
  return changes;
}

VoiceChanges ChordResolver::release(std::uint8_t button) noexcept {
  const State state = fState[button];
  if (state == State::kUp)
    return {};
  VoiceChanges changes = endWait();
  fState[button] = State::kUp;
  if (state == State::kWaiting)
    changes.addBelatedEnd(voiceOfButton(button));
  if (state == State::kAlone)
    changes.addEnd(voiceOfButton(button));
  if (state == State::kInChord) {
    fState[partnerOf(button)] = State::kIgnored;
    changes.addEnd(chordOf(button));
  }
  return changes;
}

VoiceChanges ChordResolver::moved(std::int32_t dx, std::int32_t dy) noexcept {
  if (fWaiting == kNobody)
    return {};
  fMoved += std::abs(std::int64_t{dx}) + std::abs(std::int64_t{dy});
  return fMoved > kChordSlack ? endWait() : VoiceChanges{};
}

VoiceChanges ChordResolver::endWait() noexcept {
  VoiceChanges changes;
  if (fWaiting == kNobody)
    return changes;
  fState[fWaiting] = State::kAlone;
  changes.addBegin(voiceOfButton(fWaiting));
  fWaiting = kNobody;
  return changes;
}

void ChordResolver::ignoreHeld() noexcept {
  fWaiting = kNobody;
  for (State& state : fState) {
    if (state != State::kUp)
      state = State::kIgnored;
  }
}

void ChordResolver::reset() noexcept {
  fWaiting = kNobody;
  fState.fill(State::kUp);
}

}  // namespace veltrix
