#pragma once

#include <array>
#include <cstdint>

#include "driver/engine/action_keys.h"
#include "driver/engine/action_plan.h"
#include "driver/engine/engine_types.h"
#include "driver/engine/output.h"
#include "driver/engine/voices.h"
#include "driver/engine/wheel_scroll.h"

namespace veltrix {

// How a finger clicks: quick enough for every desktop's double click, slow enough that no filter against
// bouncing buttons swallows a press.
inline constexpr Microseconds kClickDownTime{30'000};
inline constexpr Microseconds kClickUpTime{50'000};

// A held scroll command steps at once, again after the first of these, and then after each of the second.
inline constexpr Microseconds kFirstScrollRepeat{300'000};
inline constexpr Microseconds kScrollRepeat{60'000};

// When, and to where, something is played.
struct Stage {
  Microseconds now;
  WheelScroll& wheel;
  Output& output;
};

// Plays what buttons, chords and the detents of the wheel do, one voice for each.
class ActionPlayer {
 public:
  // The button of the voice went down. Ends what the voice still plays.
  void begin(std::uint8_t voice, const ActionPlan& plan, const Stage& stage) noexcept;

  // The button came up. A belated end, one at the time of its begin, keeps a click down for kClickDownTime.
  void end(std::uint8_t voice, bool isBelated, const Stage& stage) noexcept;

  // Begins and ends at once. A click that comes before the last one of the voice is over waits for it, up to
  // kMostPresses.
  void tap(std::uint8_t voice, const ActionPlan& plan, const Stage& stage) noexcept;

  // Releases what is down for the length of a click only, so that nothing that follows falls into the click.
  void endLingering(const Stage& stage) noexcept;

  // Ends everything, modes that were turned on and the drag lock too.
  void endAll(const Stage& stage) noexcept;

  PointerModes modes() const noexcept;

  Microseconds deadline() const noexcept { return fDeadline; }
  void expire(const Stage& stage) noexcept;

 private:
  static constexpr std::uint8_t kMostPresses = 12;
  static constexpr std::uint8_t kNobody = 255;

  enum class State : std::uint8_t { kIdle, kHeld, kLingering, kClickDown, kClickUp, kRepeating };

  struct Voice {
    ActionPlan plan;
    State state = State::kIdle;
    bool isPressed = false;         // its button, as far as it is known
    std::uint8_t pressesAhead = 0;  // after the one that is down
    Microseconds due = kNever;
  };

  void notice(std::uint8_t voice, bool pressed, const Stage& stage) noexcept;
  void start(std::uint8_t voice, const Stage& stage) noexcept;
  void startPress(Voice& voice, const Stage& stage) noexcept;
  void finishPress(Voice& voice, const Stage& stage) noexcept;
  void finish(Voice& voice, const Stage& stage) noexcept;
  void stop(Voice& voice, bool isBelated, const Stage& stage) noexcept;
  void advance(Voice& voice, const Stage& stage) noexcept;
  void startLock(std::uint8_t voice, const Stage& stage) noexcept;
  void endLock(const Stage& stage) noexcept;
  void updateDeadline() noexcept;

  std::array<Voice, kVoices> fVoice{};
  ActionKeys fKeys;
  ActionPlan fLock;                  // what the drag lock holds
  std::uint8_t fLockedBy = kNobody;  // the voice that holds it
  std::array<std::uint8_t, 3> fModeHolders{};
  std::array<bool, 3> fModeIsOn{};
  Microseconds fDeadline = kNever;
};

}  // namespace veltrix
