#pragma once

#include <string>

#include "helperlink/device_list.h"
#include "util/result.h"

namespace veltrix {

// A trackball as a source found it. No two that are connected at the same time have the same id.
struct FoundDevice {
  std::string id;
  VeltrixDeviceEntry entry{};
};

class DeviceListener {
 public:
  virtual ~DeviceListener() = default;
  virtual void deviceAttached(const FoundDevice& device) = 0;
  virtual void deviceDetached(const std::string& id) = 0;
};

// Knows which trackballs are connected.
class DeviceSource {
 public:
  virtual ~DeviceSource() = default;

  // Reports those that are connected before it returns, and every change from then on. The listener must
  // outlive the source. Called once.
  virtual Status start(DeviceListener& listener) = 0;
};

}  // namespace veltrix
