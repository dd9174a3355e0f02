#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace veltrix {

inline constexpr std::size_t kRecordActions = 16;
inline constexpr std::uint8_t kRecordNotSet = 255;

#pragma pack(push, 1)

// What one button, chord or the wheel does.
struct RecordAction {
  std::uint16_t command;
  std::uint16_t modifiers;
  std::uint16_t argument;
  std::uint32_t reserved;  // always 0
};

// The settings of one trackball as they travel to the driver; integers in the byte order of the machine.
struct DriverRecord {
  std::uint8_t driverEnabled;
  std::uint8_t speed;          // dots per inch divided by 20, low 8 bits; kRecordNotSet when not set
  std::uint8_t acceleration;   // factor times 100, low 8 bits; kRecordNotSet when not set
  std::uint8_t axisFlags;      // kInvertX, kInvertY, kInvertZ, kSwapXY
  std::uint8_t invertWheel;    // 0 or 1
  std::uint8_t slowModifiers;  // modifier mask shifted right by 8; 0 when the mode is off
  std::uint8_t singleModifiers;
  std::uint8_t actionCount;
  std::uint8_t inertialScroll;  // 0 or 1
  std::uint8_t reserved[7];     // always 0
  RecordAction action[kRecordActions];
};

#pragma pack(pop)

inline constexpr std::uint8_t kInvertX = 1;
inline constexpr std::uint8_t kInvertY = 2;
inline constexpr std::uint8_t kInvertZ = 4;
inline constexpr std::uint8_t kSwapXY = 8;

static_assert(sizeof(RecordAction) == 10);
static_assert(sizeof(DriverRecord) == 176);
static_assert(offsetof(DriverRecord, action) == 16);
static_assert(std::is_trivially_copyable_v<DriverRecord>);

}  // namespace veltrix
