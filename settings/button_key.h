#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

// The keys of "buttons": the button number with at least two digits.
namespace veltrix {

inline constexpr std::int32_t kButtonCount = 16;  // 0 to 15 reach the driver

// "00" for 0, "12" for 12, "123" for 123, "-1" for -1.
inline std::string buttonKey(std::int32_t button) {
  std::string digits = std::to_string(button);
  if (digits.size() < 2) {
    digits.insert(digits.begin(), '0');
  }
  return digits;
}

}  // namespace veltrix
