#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "helper/device_source.h"

namespace veltrix {

// What a simulated trackball is made from, as "VENDOR:PRODUCT:VERSION" in hexadecimal; the version as the
// device list has it ("0107" is 1.07, "010A" is 1.10).
struct SimulatedDevice {
  std::uint16_t vendorId = 0;
  std::uint16_t productId = 0;
  std::uint16_t productVersion = 0;
  friend bool operator==(const SimulatedDevice&, const SimulatedDevice&) = default;
};

std::optional<SimulatedDevice> parseSimulatedDevice(std::string_view text);

// Trackballs separated by commas; an empty text is none of them.
std::optional<std::vector<SimulatedDevice>> parseSimulatedDevices(std::string_view text);

// Trackballs that are plugged and unplugged by calls.
class SimulatedDeviceSource final : public DeviceSource {
 public:
  explicit SimulatedDeviceSource(std::vector<SimulatedDevice> present) : fPresent(std::move(present)) {}

  Status start(DeviceListener& listener) override;
  void plug(const SimulatedDevice& device);
  // Unplugs the one that was plugged first among those alike; false when there is none.
  bool unplug(const SimulatedDevice& device);

 private:
  struct Plugged {
    std::string id;
    SimulatedDevice device;
  };

  std::vector<SimulatedDevice> fPresent;
  std::vector<Plugged> fPlugged;
  DeviceListener* fListener = nullptr;
  unsigned fNextNumber = 1;
};

}  // namespace veltrix
