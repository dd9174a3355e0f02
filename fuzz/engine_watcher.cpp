#include "fuzz/engine_watcher.h"

#include <algorithm>

using veltrix::ButtonNotice;
using veltrix::Microseconds;
using veltrix::OutputEvent;

namespace {

constexpr std::int32_t kFarthest = 32767;

bool isDriversCommand(int command) {
  return command <= 8 || command == 10 || (command >= 12 && command <= 18) ||
         (command >= 20 && command <= 29);
}

}  // namespace

void EngineWatcher::apply(const veltrix::DriverRecord& record, const veltrix::ScrollParameters& parameters,
                          Microseconds now) {
  begin();
  fEngine.apply(record, parameters, now, fOutput);
  look();
}

void EngineWatcher::process(const veltrix::InputFrame& frame, std::uint8_t heldModifiers) {
  begin();
  fEngine.process(frame, heldModifiers, fOutput);
  look();
}

void EngineWatcher::modifiersChanged(std::uint8_t heldModifiers) {
  fEngine.modifiersChanged(heldModifiers);
}

void EngineWatcher::expire(Microseconds now) {
  begin();
  fEngine.expire(now, fOutput);
  look();
}

void EngineWatcher::resynchronize(std::uint16_t buttonsDown, Microseconds now, std::uint8_t heldModifiers) {
  begin();
  fEngine.resynchronize(buttonsDown, now, heldModifiers, fOutput);
  look();
}

void EngineWatcher::release(Microseconds now) {
  begin();
  fEngine.release(now, fOutput);
  look();
  requireNothingDown();
  require(std::all_of(fNoticed.begin(), fNoticed.end(), [](int command) { return command == 0; }),
          "the helper is not told of an end");
  require(fEngine.deadline() == veltrix::kNever, "something waits after the release");
}

void EngineWatcher::requireNothingDown() {
  require(std::find(fIsDown.begin(), fIsDown.end(), true) == fIsDown.end(), "a key stays down");
}

void EngineWatcher::look() {
  require(!fOutput.overflowed(), "the output overflows");
  for (const OutputEvent& event : fOutput.events()) lookAt(event);
  require(!fGroupHasKeyboard && !fGroupHasPointer, "a group is left open");
  for (const ButtonNotice& notice : fOutput.notices()) lookAt(notice);
  note(static_cast<std::uint64_t>(fEngine.deadline().count()));
}

void EngineWatcher::lookAt(const OutputEvent& event) {
  note(event.type);
  note(event.code);
  note(static_cast<std::uint32_t>(event.value));
  if (event.type == EV_SYN) {
    require(event.code == SYN_REPORT && event.value == 0, "an event of synchronisation is odd");
    require(fGroupHasKeyboard || fGroupHasPointer, "a group is empty");
    require(!fGroupHasKeyboard || !fGroupHasPointer, "a group mixes the devices");
    fGroupHasKeyboard = fGroupHasPointer = false;
    return;
  }
  require(event.type == EV_KEY || event.type == EV_REL, "an event has an odd type");
  if (event.type == EV_KEY) {
    lookAtKey(event);
    return;
  }
  fGroupHasPointer = true;
  require(event.code < REL_CNT, "an axis is unknown");
  require(event.value != 0 && event.value >= -kFarthest && event.value <= kFarthest, "a motion is too far");
}

void EngineWatcher::lookAtKey(const OutputEvent& event) {
  (event.code < BTN_MISC ? fGroupHasKeyboard : fGroupHasPointer) = true;
  require(event.code > KEY_RESERVED && event.code < KEY_CNT, "a key is unknown");
  require(event.value == 0 || event.value == 1, "a key has an odd value");
  if (event.code >= KEY_CNT)
    return;
  require(fIsDown[event.code] != (event.value == 1), "a key goes the way that it is");
  fIsDown[event.code] = event.value == 1;
}

void EngineWatcher::lookAt(const ButtonNotice& notice) {
  note(notice.slot);
  note(notice.command);
  note(notice.pressed ? 1 : 0);
  require(notice.slot < veltrix::kRecordActions, "a notice is of no slot");
  require(notice.forHelper != isDriversCommand(notice.command), "a notice is for the wrong one");
  if (notice.slot >= veltrix::kRecordActions)
    return;
  int& noticed = fNoticed[notice.slot];
  require(noticed == (notice.pressed ? 0 : notice.command + 1), "notices do not alternate");
  noticed = notice.pressed ? notice.command + 1 : 0;
}

void EngineWatcher::require(bool condition, const char* rule) {
  if (!condition && fProblem.empty())
    fProblem = rule;
}
