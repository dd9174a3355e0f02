#pragma once

#include <cstdint>

namespace veltrix {

// The vendor of all trackballs that the driver looks after.
inline constexpr std::uint16_t kTrackballVendor = 0xA1D0;

// A USB version, two binary-coded decimal bytes, as the plain binary of DeviceAddress::productVersion.
constexpr std::uint16_t productVersionFromBcd(std::uint16_t bcd) noexcept {
  constexpr auto kBinary = [](unsigned byte) { return (byte >> 4U) * 10U + (byte & 0xFU); };
  return static_cast<std::uint16_t>(kBinary(bcd >> 8U) << 8U | kBinary(bcd & 0xFFU));
}

}  // namespace veltrix
