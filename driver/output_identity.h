#pragma once

#include <cstdint>

#include "driverlink/device_family.h"

// How the driver's own devices are told from every other. The udev rules know them by the same names.
namespace veltrix {

inline constexpr const char* kPointerName = "Veltrix Trackball";
inline constexpr const char* kKeyboardName = "Veltrix Keyboard";
inline constexpr std::uint16_t kPointerProduct = 0xFE01;  // of kTrackballVendor, as no real one is
inline constexpr std::uint16_t kKeyboardProduct = 0xFE02;

constexpr bool isOwnDevice(std::uint16_t vendor, std::uint16_t product) noexcept {
  return vendor == kTrackballVendor && (product == kPointerProduct || product == kKeyboardProduct);
}

}  // namespace veltrix
