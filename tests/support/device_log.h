#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "helper/device_source.h"

namespace veltrix::testing {

// What a device source says is connected, in the order in which it said so.
class DeviceLog : public DeviceListener {
 public:
  void deviceAttached(const FoundDevice& device) override { connected.push_back(device); }
  void deviceDetached(const std::string& id) override {
    const auto gone = std::find_if(connected.begin(), connected.end(),
                                   [&](const FoundDevice& device) { return device.id == id; });
    if (gone == connected.end()) {
      ADD_FAILURE() << "detached without having been attached: " << id;
    } else {
      connected.erase(gone);
    }
  }

  std::vector<FoundDevice> connected;
};

}  // namespace veltrix::testing
