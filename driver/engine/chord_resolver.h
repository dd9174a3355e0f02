#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "driver/engine/engine_types.h"
#include "driver/engine/voices.h"

namespace veltrix {

// Both buttons of a chord have to go down within this time of each other, the end included.
inline constexpr Microseconds kChordTime{40'000};

// Counts of the ball that a press may shift it by; more of them while a button waits for its partner are the
// start of a drag.
inline constexpr std::int32_t kChordSlack = 8;

// A voice begins or ends what it plays.
struct VoiceChange {
  std::uint8_t voice = 0;
  bool begins = false;
  bool isBelated = false;  // an end at one time with its begin, which had to wait

  friend bool operator==(const VoiceChange& a, const VoiceChange& b) = default;
};

// What one event leads to, in order.
class VoiceChanges {
 public:
  void addBegin(std::uint8_t voice) noexcept { fChange[fCount++] = {voice, true, false}; }
  void addEnd(std::uint8_t voice) noexcept { fChange[fCount++] = {voice, false, false}; }
  void addBelatedEnd(std::uint8_t voice) noexcept { fChange[fCount++] = {voice, false, true}; }

  const VoiceChange* begin() const noexcept { return fChange.data(); }
  const VoiceChange* end() const noexcept { return fChange.data() + fCount; }

 private:
  std::array<VoiceChange, 4> fChange{};
  std::size_t fCount = 0;
};

// Tells chords from presses of single buttons.
class ChordResolver {
 public:
  // Which chords do something: kChordOfFirstTwo, kChordOfSecondTwo. To be called while no button plays.
  void configure(bool firstChordActs, bool secondChordActs) noexcept;

  // Buttons below kMostButtons only. A press of a button that is down and a release of one that is up lead to
  // nothing.
  VoiceChanges press(std::uint8_t button, Microseconds now) noexcept;
  VoiceChanges release(std::uint8_t button) noexcept;

  // The ball turned.
  VoiceChanges moved(std::int32_t dx, std::int32_t dy) noexcept;

  // Plays the button that waits, if there is one.
  VoiceChanges endWait() noexcept;

  // When endWait() is due; kNever when no button waits.
  Microseconds deadline() const noexcept { return fWaiting == kNobody ? kNever : fDeadline; }

  bool isDown(std::uint8_t button) const noexcept { return fState[button] != State::kUp; }

  // Buttons that are down do nothing until they are pressed again.
  void ignoreHeld() noexcept;

  // Every button is up.
  void reset() noexcept;

 private:
  enum class State : std::uint8_t { kUp, kWaiting, kAlone, kInChord, kIgnored };
  static constexpr std::uint8_t kNobody = 255;

  bool canStartChord(std::uint8_t button) const noexcept;

  std::array<State, kMostButtons> fState{};
  std::array<bool, 2> fChordActs{};
  std::uint8_t fWaiting = kNobody;
  Microseconds fDeadline{};
  std::int64_t fMoved = 0;  // since the wait began
};

}  // namespace veltrix
