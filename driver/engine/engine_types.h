#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <limits>

// What goes into the engine. All times are of CLOCK_MONOTONIC and never go back.
namespace veltrix {

using Microseconds = std::chrono::duration<std::int64_t, std::micro>;

inline constexpr Microseconds kNever{std::numeric_limits<std::int64_t>::max()};

// Modifier keys that a person holds on a keyboard, one bit each, as the modifier bytes of a record have them.
inline constexpr std::uint8_t kHeldCommand = 1;
inline constexpr std::uint8_t kHeldShift = 2;
inline constexpr std::uint8_t kHeldCapsLock = 4;
inline constexpr std::uint8_t kHeldOption = 8;
inline constexpr std::uint8_t kHeldControl = 16;

inline constexpr std::size_t kMostButtons = 16;
inline constexpr std::size_t kMostButtonChanges = 16;  // in one frame
inline constexpr std::int32_t kHiResPerDetent = 120;

// Slots of a record that are no button of their own.
inline constexpr std::uint8_t kChordOfFirstTwo = 8;
inline constexpr std::uint8_t kChordOfSecondTwo = 9;
inline constexpr std::uint8_t kWheelSlot = 12;

struct ButtonChange {
  std::uint8_t button;  // 0 to 15, BTN_MOUSE + button
  bool pressed;
};

// What a trackball reported at one time.
struct InputFrame {
  Microseconds time{};
  std::int32_t dx = 0;      // counts of the sensor, to the right
  std::int32_t dy = 0;      // down
  std::int32_t wheel = 0;   // kHiResPerDetent for a detent, up (away from the person)
  std::int32_t hwheel = 0;  // the same, to the right
  std::uint8_t changeCount = 0;
  std::array<ButtonChange, kMostButtonChanges> change{};  // in the order of the report
};

// What the engine has to know of a model.
struct DeviceModel {
  std::uint16_t nativeResolution = 400;  // counts for an inch of ball surface, 1 or more
};

// The model of a product of the family; the usual one for any other.
DeviceModel deviceModelOf(std::uint16_t productId) noexcept;

struct PointerModes {
  bool slow = false;            // a quarter of the speed
  bool singleAxis = false;      // keeps to the axis along which the ball moves more
  bool scrollWithBall = false;  // the ball scrolls and the pointer stays
};

}  // namespace veltrix
