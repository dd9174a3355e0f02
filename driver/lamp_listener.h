#pragma once

#include <cstdint>

namespace veltrix {

class LampListener {
 public:
  virtual ~LampListener() = default;
  // `lit` are the k...Lamp bits of driverlink/packets.h.
  virtual void lampsChanged(std::uint16_t lit) noexcept = 0;
};

}  // namespace veltrix
