#include "driver/engine/held_codes.h"

#include <algorithm>
#include <limits>

namespace veltrix {

bool HeldCodes::press(std::uint16_t code) noexcept {
  if (code >= KEY_CNT || fHolders[code] == std::numeric_limits<std::uint16_t>::max())
    return false;
  if (++fHolders[code] > 1)
    return false;
  fHeld[fHeldCount++] = code;
  return true;
}

bool HeldCodes::release(std::uint16_t code) noexcept {
  if (!isHeld(code) || --fHolders[code] > 0)
    return false;
  auto* const end = fHeld.data() + fHeldCount;
  std::copy(std::find(fHeld.data(), end, code) + 1, end, std::find(fHeld.data(), end, code));
  --fHeldCount;
  return true;
}

void HeldCodes::clear() noexcept {
  for (const std::uint16_t code : held()) fHolders[code] = 0;
  fHeldCount = 0;
}

}  // namespace veltrix
