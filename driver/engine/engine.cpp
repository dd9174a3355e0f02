#include "driver/engine/engine.h"

#include <algorithm>
#include <cstring>

#include "driver/engine/scroll_commands.h"

namespace veltrix {

namespace {

// Far beyond any uptime; sums of times stay within their type.
constexpr Microseconds kLatestTime{std::int64_t{1} << 62};
constexpr Microseconds kShortestTime{1};

constexpr std::int16_t kPlainWheelLines = 3;

// What an ordinary mouse does.
DriverRecord plainRecord() noexcept {
  DriverRecord record{};
  record.speed = record.acceleration = kRecordNotSet;
  return record;
}

bool areHeld(std::uint8_t held, std::uint8_t wanted) noexcept {
  return wanted != 0 && (held & wanted) == wanted;
}

// A record that gives no button anything, or that turns the driver off, leaves nobody without a mouse.
DriverRecord effectiveRecord(const DriverRecord& given) noexcept {
  DriverRecord record = given.driverEnabled != 0 ? given : plainRecord();
  if (record.actionCount == 0) {
    record.action[kWheelSlot] = {
        .command = kScrollUp, .modifiers = 0, .argument = kPlainWheelLines, .reserved = 0};
  }
  return record;
}

bool areAlike(const DriverRecord& a, const DriverRecord& b) noexcept {
  return std::memcmp(&a, &b, sizeof a) == 0;
}

}  // namespace

Engine::Engine(const DeviceModel& model) noexcept
    : fRecord(effectiveRecord(plainRecord())), fPointer(model), fWheel(model) {
  configure();
}

void Engine::configure() noexcept {
  const bool isPlain = fRecord.actionCount == 0;
  for (std::uint8_t slot = 0; slot < kRecordActions; ++slot) {
    const ActionPlan plain = planOfPlainButton(slot);
    fPlan[kFirstPlainVoice + slot] = plain;
    fPlan[slot] = isPlain ? plain : planOf(fRecord.action[slot]);
  }
  fChords.configure(!isPlain && fPlan[kChordOfFirstTwo].command != 0,
                    !isPlain && fPlan[kChordOfSecondTwo].command != 0);
  fPointer.configure(fRecord);
  fWheel.configure(fRecord, fParameters);
}

void Engine::apply(const DriverRecord& record, const ScrollParameters& parameters, Microseconds now,
                   Output& output) noexcept {
  advance(now);
  const DriverRecord effective = effectiveRecord(record);
  if (areAlike(effective, fRecord) && parameters == fParameters)
    return;
  fPlayer.endAll(stage(output));
  fChords.ignoreHeld();
  fDetents.rest();
  fRecord = effective;
  fParameters = parameters;
  configure();
}

void Engine::process(const InputFrame& frame, std::uint8_t heldModifiers, Output& output) noexcept {
  // What was due before this frame comes first; a chord that completes at its deadline still counts.
  const Microseconds now = advance(frame.time);
  if (deadline() < now)
    serve(now - kShortestTime, output);
  const bool moves = frame.dx != 0 || frame.dy != 0;
  const bool turns = frame.wheel != 0 || frame.hwheel != 0;
  if (frame.changeCount == 0) {
    if (moves)
      play(fChords.moved(frame.dx, frame.dy), output);
    if (turns)
      play(fChords.endWait(), output);
  }
  if (moves || turns)
    fPlayer.endLingering(stage(output));
  if (moves)
    turnBall(frame, heldModifiers, output);
  if (turns)
    turnWheel(frame, output);
  output.sync();
  const std::size_t changes = std::min<std::size_t>(frame.changeCount, kMostButtonChanges);
  for (std::size_t index = 0; index < changes; ++index) changeButton(frame.change[index], output);
}

void Engine::turnBall(const InputFrame& frame, std::uint8_t heldModifiers, Output& output) noexcept {
  PointerModes modes = fPlayer.modes();
  modes.slow = modes.slow || areHeld(heldModifiers, fRecord.slowModifiers);
  modes.singleAxis = modes.singleAxis || areHeld(heldModifiers, fRecord.singleModifiers);
  if (modes.scrollWithBall) {
    fPointer.rest();
    fWheel.roll(frame.dx, frame.dy, output);
    return;
  }
  const Movement movement = fPointer.move(fNow, frame.dx, frame.dy, modes);
  output.relative(REL_X, movement.dx);
  output.relative(REL_Y, movement.dy);
}

void Engine::turnWheel(const InputFrame& frame, Output& output) noexcept {
  if (isScroll(fRecord.action[kWheelSlot].command)) {
    fWheel.turn(fNow, frame.wheel, frame.hwheel, output);
    return;
  }
  const ActionPlan& plan = fPlan[kWheelSlot];
  if (plan.command == 0)
    return;
  output.sync();
  for (int detents = fDetents.turn(frame.wheel); detents > 0; --detents)
    fPlayer.tap(kWheelSlot, plan, stage(output));
}

void Engine::changeButton(const ButtonChange& change, Output& output) noexcept {
  if (change.button >= kMostButtons || change.pressed == fChords.isDown(change.button))
    return;
  if (change.pressed)
    fWheel.stop();
  play(change.pressed ? fChords.press(change.button, fNow) : fChords.release(change.button), output);
}

void Engine::play(const VoiceChanges& changes, Output& output) noexcept {
  for (const VoiceChange& change : changes) {
    if (change.begins)
      fPlayer.begin(change.voice, fPlan[change.voice], stage(output));
    else
      fPlayer.end(change.voice, change.isBelated, stage(output));
  }
}

void Engine::modifiersChanged(std::uint8_t /*heldModifiers*/) noexcept {
  fWheel.stop();
}

Microseconds Engine::deadline() const noexcept {
  return std::min({fChords.deadline(), fPlayer.deadline(), fWheel.deadline()});
}

void Engine::expire(Microseconds now, Output& output) noexcept {
  serve(advance(now), output);
}

void Engine::serve(Microseconds now, Output& output) noexcept {
  if (fChords.deadline() <= now)
    play(fChords.endWait(), output);
  fPlayer.expire({now, fWheel, output});
  if (fWheel.deadline() <= now)
    fWheel.expire(now, output);
  output.sync();
}

void Engine::release(Microseconds now, Output& output) noexcept {
  advance(now);
  fPlayer.endAll(stage(output));
  fChords.reset();
  fDetents.rest();
  fPointer.rest();
  fWheel.stop();
  fWheel.rest();
}

void Engine::resynchronize(std::uint16_t buttonsDown, Microseconds now, std::uint8_t heldModifiers,
                           Output& output) noexcept {
  InputFrame frame;
  frame.time = now;
  for (const bool pressed : {false, true}) {
    for (std::uint8_t button = 0; button < kMostButtons; ++button) {
      const bool isDown = (buttonsDown >> button & 1U) != 0;
      if (isDown == pressed && isDown != fChords.isDown(button))
        frame.change[frame.changeCount++] = {button, pressed};
    }
  }
  process(frame, heldModifiers, output);
}

// Time as the engine has it never goes back, whatever it is told.
Microseconds Engine::advance(Microseconds time) noexcept {
  fNow = std::clamp(time, fNow, kLatestTime);
  return fNow;
}

}  // namespace veltrix
