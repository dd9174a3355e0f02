#pragma once

// Wheels of records, and what they give.
#include <array>
#include <cstdint>

#include "driver/engine/wheel_scroll.h"

namespace veltrix {

inline constexpr DeviceModel kModel{400};
inline constexpr ScrollParameters kFactory{60, 110, 250, 90, 1};

inline DriverRecord recordOf(std::int16_t lines, std::uint16_t command = 20) {
  DriverRecord record{};
  record.action[kWheelSlot].command = command;
  record.action[kWheelSlot].argument = static_cast<std::uint16_t>(lines);
  return record;
}

inline WheelScroll scrollOf(const DriverRecord& record) {
  WheelScroll scroll(kModel);
  scroll.configure(record, kFactory);
  return scroll;
}

// Hi-res units up and to the right.
using Units = std::array<std::int64_t, 2>;

inline Units unitsOf(const Output& output) {
  Units units{};
  for (const OutputEvent& event : output.events()) {
    units[0] += event.code == REL_WHEEL_HI_RES ? event.value : 0;
    units[1] += event.code == REL_HWHEEL_HI_RES ? event.value : 0;
  }
  return units;
}

}  // namespace veltrix
