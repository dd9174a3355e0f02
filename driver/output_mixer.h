#pragma once

#include <array>
#include <span>

#include "driver/engine/held_codes.h"
#include "driver/engine/output.h"
#include "driver/event_sink.h"

namespace veltrix {

// Brings together what several trackballs and the typing of keys give: a key or button that more than one of
// them holds goes down with the first and up with the last. Each of them presses a key once at a time.
class OutputMixer {
 public:
  // The sink must outlive the mixer.
  explicit OutputMixer(EventSink& sink) noexcept : fSink(sink) {}

  // Whole groups; groups of which nothing remains are left out. 0 or an errno value.
  int write(std::span<const OutputEvent> groups) noexcept;

  // New devices have taken the place of the old ones: nothing is held.
  void forget() noexcept { fHeld.clear(); }

 private:
  bool passes(const OutputEvent& event) noexcept;

  EventSink& fSink;
  HeldCodes fHeld;
  std::array<OutputEvent, Output::kMostEvents> fMixed;
};

}  // namespace veltrix
