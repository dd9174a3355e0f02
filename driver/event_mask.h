#pragma once

#include <linux/input.h>
#include <sys/ioctl.h>

#include <array>
#include <cstddef>
#include <cstdint>

namespace veltrix {

// Bitmaps as the kernel takes them, of whole words only.
inline constexpr unsigned kBitmapWordBits = 8 * sizeof(unsigned long);
template <unsigned bits>
using EventBitmap = std::array<unsigned long, (bits + kBitmapWordBits - 1) / kBitmapWordBits>;

// From now on the kernel delivers only those codes of that type of event to this descriptor; with type 0,
// only those types.
template <std::size_t words>
bool setEventMask(int descriptor, std::uint32_t type,
                  const std::array<unsigned long, words>& codes) noexcept {
  input_mask mask{};
  mask.type = type;
  mask.codes_size = sizeof codes;
  mask.codes_ptr = reinterpret_cast<std::uintptr_t>(codes.data());
  return ioctl(descriptor, EVIOCSMASK, &mask) == 0;
}

}  // namespace veltrix
