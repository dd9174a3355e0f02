#pragma once

#include <cstdint>
#include <memory>

#include "driver/driver_core.h"
#include "tests/driver/driver_fakes.h"

namespace veltrix {

// A driver with a helper, a trackball that can be plugged in, and no kernel. What it writes goes to a Sink,
// what it tells its helper to a Channel.
template <class Sink, class Channel>
struct CoreOnFakes {
  CoreOnFakes() {
    core.setChannel(&channel);
    core.helperArrived();
  }

  std::uint32_t plug(FakeTrackballState& state, const DeviceAddress& address = kSomeTrackball) {
    return core.attach(std::make_unique<FakeTrackball>(state, address));
  }

  void apply(const DriverRecord& record = someRecord(), const DeviceAddress& address = kSomeTrackball,
             const ScrollParameters& scroll = {}) {
    auto packet = makePacket<ApplyPacket>();
    packet.device = address;
    packet.record = record;
    packet.scroll = scroll;
    core.apply(packet);
  }

  FakeLoop loop;
  Sink sink;
  FakeModifiers modifiers;
  FakeKeyPresses keyPresses;
  Channel channel;
  FakeTrackballState ball;
  DriverCore core{loop, sink, modifiers, keyPresses};
};

}  // namespace veltrix
