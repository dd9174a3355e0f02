#pragma once

#include <linux/input-event-codes.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace veltrix {

// Which keys and buttons are down, and how many holders each one has: a key that two hold goes down with the
// first and comes up with the last.
class HeldCodes {
 public:
  // One more holder. Whether the key went down just now and the press has to be written. A code of KEY_CNT or
  // more is never held.
  bool press(std::uint16_t code) noexcept;

  // One holder less. Whether the key came up just now. False as well when nobody holds it.
  bool release(std::uint16_t code) noexcept;

  bool isHeld(std::uint16_t code) const noexcept { return code < KEY_CNT && fHolders[code] != 0; }

  // The keys that are down, in the order in which they went down.
  std::span<const std::uint16_t> held() const noexcept { return {fHeld.data(), fHeldCount}; }

  // Nobody holds anything from now on; to be called once the releases of held() are written.
  void clear() noexcept;

 private:
  std::array<std::uint16_t, KEY_CNT> fHolders{};
  std::array<std::uint16_t, KEY_CNT> fHeld{};  // the first fHeldCount of them
  std::size_t fHeldCount = 0;
};

}  // namespace veltrix
