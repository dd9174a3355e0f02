#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "tests/driver/core_on_fakes.h"

namespace veltrix {

// The key A, pressed and released.
inline TypeKeysPacket typingOf(std::uint32_t id) {
  auto packet = makePacket<TypeKeysPacket>();
  packet.id = id;
  packet.count = 2;
  packet.interval = 10;
  packet.step[0] = {KEY_A, 1};
  packet.step[1] = {KEY_A, 0};
  return packet;
}

// A driver with two trackballs, and what its helper heard of them.
class DriverCoreTest : public ::testing::Test, protected CoreOnFakes<FakeSink, FakeChannel> {
 protected:
  void withdraw(const DeviceAddress& address = kSomeTrackball) {
    auto packet = makePacket<WithdrawPacket>();
    packet.device = address;
    core.withdraw(packet);
  }

  void press(FakeTrackballState& state, std::uint8_t button, bool pressed = true) {
    ASSERT_NE(state.listener, nullptr);
    state.listener->frameCame(buttonFrame(loop.time, button, pressed));
  }

  // The conditions that the helper was told of since the last time, in their order.
  std::vector<DeviceCondition> conditions() {
    std::vector<DeviceCondition> result;
    for (const auto& packet : channel.packets<DeviceStatePacket>())
      result.push_back(static_cast<DeviceCondition>(packet.condition));
    channel.clear();
    return result;
  }

  FakeTrackballState other;
};

}  // namespace veltrix
