#pragma once

#include <cstdint>

#include "driver/engine/engine_types.h"
#include "driverlink/record.h"

// A voice plays what one slot of the record says. Buttons whose slots belong to the chords and the wheel have
// no slot of their own; they pass straight through, each by a voice beyond those of the slots.
namespace veltrix {

inline constexpr std::uint8_t kFirstPlainVoice = kRecordActions;
inline constexpr std::uint8_t kVoices = kFirstPlainVoice + kMostButtons;

constexpr std::uint8_t voiceOfButton(std::uint8_t button) noexcept {
  const bool hasNoSlot = button == kChordOfFirstTwo || button == kChordOfSecondTwo || button == kWheelSlot;
  return hasNoSlot ? static_cast<std::uint8_t>(kFirstPlainVoice + button) : button;
}

}  // namespace veltrix
