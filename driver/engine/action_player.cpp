#include "driver/engine/action_player.h"

#include <algorithm>

// Each voice is in one of these states. "Ahead" are the presses that a click still has before it.
//
//   state      | event              | leads to
//   -----------+--------------------+-------------------------------------------------------
//   idle       | begin, key         | held; modifiers and key down
//              | begin, click       | modifiers and button down: held when it is the last
//              |                    | press, else click down
//              | begin, scrolling   | repeating; one step
//              | begin, all others  | held; mode entered or turned, lock begun or ended, or
//              |                    | nothing
//   held       | end                | idle; released in the opposite order
//              | belated end        | a click: lingering; anything else as end
//   lingering  | due                | nothing ahead: idle, released; else click up, button up
//              | something else     | idle, released, when nothing is ahead
//   click down | due                | click up; button up
//   click up   | due                | button down: click down; for the last press held while
//              |                    | the button of the voice is down, else lingering
//   repeating  | due                | one more step
//              | end                | idle
//   any other  | end                | the same; it completes by itself
//   any but    | begin              | idle, released; then as from idle
//   idle       | tap of a click     | the same, with more presses ahead
//   any        | end of everything  | idle, released
namespace veltrix {

void ActionPlayer::notice(std::uint8_t voice, bool pressed, const Stage& stage) noexcept {
  const ActionPlan& plan = fVoice[voice].plan;
  if (plan.isReported)
    stage.output.notice({voice, plan.command, pressed, plan.forHelper});
}

void ActionPlayer::begin(std::uint8_t voice, const ActionPlan& plan, const Stage& stage) noexcept {
  endLingering(stage);
  finish(fVoice[voice], stage);
  fVoice[voice].plan = plan;
  fVoice[voice].isPressed = true;
  notice(voice, true, stage);
  start(voice, stage);
  updateDeadline();
}

void ActionPlayer::end(std::uint8_t voice, bool isBelated, const Stage& stage) noexcept {
  if (!fVoice[voice].isPressed)
    return;
  endLingering(stage);
  notice(voice, false, stage);
  stop(fVoice[voice], isBelated, stage);
  updateDeadline();
}

void ActionPlayer::tap(std::uint8_t voice, const ActionPlan& plan, const Stage& stage) noexcept {
  Voice& played = fVoice[voice];
  if (played.state == State::kIdle || plan.kind != PlanKind::kClick) {
    begin(voice, plan, stage);
    end(voice, plan.kind == PlanKind::kClick, stage);
    return;
  }
  notice(voice, true, stage);
  notice(voice, false, stage);
  played.pressesAhead =
      static_cast<std::uint8_t>(std::min<int>(played.pressesAhead + plan.presses, kMostPresses));
}

void ActionPlayer::start(std::uint8_t voice, const Stage& stage) noexcept {
  Voice& played = fVoice[voice];
  const ActionPlan& plan = played.plan;
  played.state = State::kHeld;
  switch (plan.kind) {
    case PlanKind::kNothing:
      break;
    case PlanKind::kClick:
      endLock(stage);
      fKeys.pressModifiers(plan.modifiers, stage.output);
      played.pressesAhead = plan.presses;
      startPress(played, stage);
      break;
    case PlanKind::kKey:
      fKeys.pressModifiers(plan.modifiers, stage.output);
      fKeys.press(plan.code, stage.output);
      break;
    case PlanKind::kDragLock:
      startLock(voice, stage);
      break;
    case PlanKind::kScroll:
      played.state = State::kRepeating;
      played.due = stage.now + kFirstScrollRepeat;
      stage.wheel.step(plan.command, plan.lines, stage.output);
      stage.output.sync();
      break;
    case PlanKind::kModeWhileHeld:
      ++fModeHolders[static_cast<std::size_t>(plan.mode)];
      break;
    case PlanKind::kModeOnOff: {
      bool& isOn = fModeIsOn[static_cast<std::size_t>(plan.mode)];
      isOn = !isOn;
      break;
    }
  }
}

void ActionPlayer::startPress(Voice& voice, const Stage& stage) noexcept {
  fKeys.press(voice.plan.code, stage.output);
  --voice.pressesAhead;
  const bool isHeld = voice.pressesAhead == 0 && voice.isPressed;
  voice.state = isHeld ? State::kHeld : voice.pressesAhead > 0 ? State::kClickDown : State::kLingering;
  voice.due = isHeld ? kNever : stage.now + kClickDownTime;
}

void ActionPlayer::finishPress(Voice& voice, const Stage& stage) noexcept {
  if (voice.pressesAhead == 0) {
    finish(voice, stage);
    return;
  }
  fKeys.release(voice.plan.code, stage.output);
  voice.state = State::kClickUp;
  voice.due = stage.now + kClickUpTime;
}

// The button of the voice came up.
void ActionPlayer::stop(Voice& voice, bool isBelated, const Stage& stage) noexcept {
  voice.isPressed = false;
  if (voice.state == State::kClickDown || voice.state == State::kClickUp)
    return;
  if (isBelated && voice.plan.kind == PlanKind::kClick) {
    voice.state = State::kLingering;
    voice.due = stage.now + kClickDownTime;
    return;
  }
  finish(voice, stage);
}

// Whatever the voice does comes to its end, but for what outlives its button.
void ActionPlayer::finish(Voice& voice, const Stage& stage) noexcept {
  if (voice.state == State::kIdle)
    return;
  const bool holds = voice.plan.kind == PlanKind::kClick || voice.plan.kind == PlanKind::kKey;
  if (holds && voice.state != State::kClickUp)
    fKeys.release(voice.plan.code, stage.output);
  if (holds)
    fKeys.releaseModifiers(voice.plan.modifiers, stage.output);
  if (voice.plan.kind == PlanKind::kModeWhileHeld)
    --fModeHolders[static_cast<std::size_t>(voice.plan.mode)];
  voice.state = State::kIdle;
  voice.pressesAhead = 0;
  voice.due = kNever;
}

void ActionPlayer::advance(Voice& voice, const Stage& stage) noexcept {
  switch (voice.state) {
    case State::kClickDown:
    case State::kLingering:
      finishPress(voice, stage);
      break;
    case State::kClickUp:
      startPress(voice, stage);
      break;
    case State::kRepeating:
      stage.wheel.step(voice.plan.command, voice.plan.lines, stage.output);
      stage.output.sync();
      voice.due = stage.now + kScrollRepeat;
      break;
    case State::kIdle:
    case State::kHeld:
      voice.due = kNever;
      break;
  }
}

void ActionPlayer::startLock(std::uint8_t voice, const Stage& stage) noexcept {
  const bool isUnlocked = fLockedBy == voice;
  endLock(stage);
  if (isUnlocked)
    return;
  fLock = fVoice[voice].plan;
  fLockedBy = voice;
  fKeys.pressModifiers(fLock.modifiers, stage.output);
  fKeys.press(fLock.code, stage.output);
}

void ActionPlayer::endLock(const Stage& stage) noexcept {
  if (fLockedBy == kNobody)
    return;
  fLockedBy = kNobody;
  fKeys.release(fLock.code, stage.output);
  fKeys.releaseModifiers(fLock.modifiers, stage.output);
}

void ActionPlayer::endLingering(const Stage& stage) noexcept {
  if (fDeadline == kNever)
    return;
  for (Voice& voice : fVoice) {
    if (voice.state == State::kLingering && voice.pressesAhead == 0)
      finish(voice, stage);
  }
  updateDeadline();
}

void ActionPlayer::endAll(const Stage& stage) noexcept {
  for (std::uint8_t voice = 0; voice < kVoices; ++voice) {
    if (fVoice[voice].isPressed)
      notice(voice, false, stage);
    fVoice[voice] = {};
  }
  fKeys.releaseAll(stage.output);
  fLockedBy = kNobody;
  fModeHolders.fill(0);
  fModeIsOn.fill(false);
  fDeadline = kNever;
}

PointerModes ActionPlayer::modes() const noexcept {
  const auto isActive = [this](PointerMode mode) {
    const auto index = static_cast<std::size_t>(mode);
    return fModeIsOn[index] || fModeHolders[index] > 0;
  };
  return {.slow = isActive(PointerMode::kSlow),
          .singleAxis = isActive(PointerMode::kSingleAxis),
          .scrollWithBall = isActive(PointerMode::kScrollWithBall)};
}

void ActionPlayer::expire(const Stage& stage) noexcept {
  if (stage.now < fDeadline)
    return;
  for (Voice& voice : fVoice) {
    if (voice.due <= stage.now)
      advance(voice, stage);
  }
  updateDeadline();
}

void ActionPlayer::updateDeadline() noexcept {
  fDeadline = kNever;
  for (const Voice& voice : fVoice) fDeadline = std::min(fDeadline, voice.due);
}

}  // namespace veltrix
