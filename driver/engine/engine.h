#pragma once

#include <array>

#include "driver/engine/action_plan.h"
#include "driver/engine/action_player.h"
#include "driver/engine/chord_resolver.h"
#include "driver/engine/detent_counter.h"
#include "driver/engine/engine_types.h"
#include "driver/engine/output.h"
#include "driver/engine/pointer_motion.h"
#include "driver/engine/voices.h"
#include "driver/engine/wheel_scroll.h"
#include "driverlink/record.h"
#include "driverlink/scroll_parameters.h"

namespace veltrix {

// What one trackball does by its record. Frames and time in, events and the next deadline out; no clock, no
// input or output, nothing allocated, nothing thrown. Every call adds complete groups to `output`, which the
// caller cleared.
class Engine {
 public:
  // Works by an empty record, an ordinary mouse, until apply().
  explicit Engine(const DeviceModel& model) noexcept;

  // From now on works by this record. What held buttons began is ended, and modes and the drag lock that are
  // on; a button that is still down does nothing until it is pressed again. Nothing at all happens when it
  // works by this record already.
  void apply(const DriverRecord& record, const ScrollParameters& parameters, Microseconds now,
             Output& output) noexcept;

  // `heldModifiers` are the kHeld... bits of all keyboards.
  void process(const InputFrame& frame, std::uint8_t heldModifiers, Output& output) noexcept;

  // A modifier key of a keyboard went down or up: what rolls on stops.
  void modifiersChanged(std::uint8_t heldModifiers) noexcept;

  // When expire() is to be called next; kNever when nothing waits.
  Microseconds deadline() const noexcept;

  // Does what is due. Later calls than the deadline are served as well.
  void expire(Microseconds now, Output& output) noexcept;

  // Releases everything that is pressed and ends every mode, as after an unplug.
  void release(Microseconds now, Output& output) noexcept;

  // Tells the buttons that are down from now on, bit n for button n, after events were lost (SYN_DROPPED).
  void resynchronize(std::uint16_t buttonsDown, Microseconds now, std::uint8_t heldModifiers,
                     Output& output) noexcept;

 private:
  Microseconds advance(Microseconds time) noexcept;
  Stage stage(Output& output) noexcept { return {fNow, fWheel, output}; }
  void configure() noexcept;
  void serve(Microseconds now, Output& output) noexcept;
  void turnBall(const InputFrame& frame, std::uint8_t heldModifiers, Output& output) noexcept;
  void turnWheel(const InputFrame& frame, Output& output) noexcept;
  void changeButton(const ButtonChange& change, Output& output) noexcept;
  void play(const VoiceChanges& changes, Output& output) noexcept;

  DriverRecord fRecord;  // as it is carried out
  ScrollParameters fParameters{};
  std::array<ActionPlan, kVoices> fPlan{};
  ChordResolver fChords;
  ActionPlayer fPlayer;
  PointerMotion fPointer;
  WheelScroll fWheel;
  DetentCounter fDetents;
  Microseconds fNow{0};
};

}  // namespace veltrix
