#pragma once

#include <linux/input-event-codes.h>

#include <cerrno>
#include <cstring>
#include <span>
#include <utility>
#include <vector>

#include "driver/event_sink.h"
#include "driver/helper_channel.h"
#include "driver/key_press_source.h"
#include "driver/modifier_source.h"
#include "driver/poll_loop.h"
#include "driver/trackball.h"
#include "driverlink/packet_rules.h"

// What a driver has around it, for tests: nothing of it is real, and the time is set by hand.
namespace veltrix {

class FakeLoop final : public PollLoop {
 public:
  Status add(int /*descriptor*/, std::uint32_t /*events*/, PollHandler& /*handler*/) override {
    return Done{};
  }
  void remove(int /*descriptor*/) noexcept override {}
  Microseconds now() const noexcept override { return time; }

  Microseconds time{1'000'000};
};

// What a trackball was told; outlives it, as the driver owns that.
struct FakeTrackballState {
  TrackballListener* listener = nullptr;  // while it is open
  bool grabbed = false;
  std::uint16_t down = 0;
  std::uint16_t downOnceGrabbed = 0;  // comes to `down` with the next grab
  int openError = 0;
  int grabError = 0;
  int grabs = 0;
  int opens = 0;
};

class FakeTrackball final : public Trackball {
 public:
  FakeTrackball(FakeTrackballState& state, const DeviceAddress& address) : fState(state), fAddress(address) {}
  DeviceAddress address() const noexcept override { return fAddress; }
  int open(TrackballListener& listener) noexcept override {
    ++fState.opens;
    fState.listener = fState.openError == 0 ? &listener : nullptr;
    return fState.openError;
  }
  void close() noexcept override {
    fState.listener = nullptr;
    fState.grabbed = false;
  }
  int grab() noexcept override {
    ++fState.grabs;
    fState.grabbed = fState.grabError == 0;
    fState.down |= std::exchange(fState.downOnceGrabbed, std::uint16_t{0});
    return fState.grabError;
  }
  void ungrab() noexcept override { fState.grabbed = false; }
  int buttons(std::uint16_t* down) noexcept override {
    *down = fState.down;
    return 0;
  }

 private:
  FakeTrackballState& fState;
  const DeviceAddress fAddress;
};

class FakeSink final : public EventSink {
 public:
  int open() noexcept override {
    ++opens;
    isThere = openError == 0;
    return openError;
  }
  void close() noexcept override { isThere = false; }
  bool isOpen() const noexcept override { return isThere; }
  int write(std::span<const OutputEvent> groups) noexcept override {
    if (writeError == 0)
      written.insert(written.end(), groups.begin(), groups.end());
    return writeError;
  }

  // What was written since the last time.
  std::vector<OutputEvent> take() { return std::exchange(written, {}); }

  std::vector<OutputEvent> written;
  bool isThere = true;
  int openError = 0;
  int writeError = 0;
  int opens = 0;
};

class FakeModifiers final : public ModifierSource {
 public:
  void watch(bool wanted) noexcept override { watched = wanted; }
  bool watched = false;
};

class FakeKeyPresses final : public KeyPressSource {
 public:
  void begin() noexcept override { watched = true, ++begun; }
  bool keyWentDown() noexcept override {
    ++asked;
    return watched && down;
  }
  void end() noexcept override { watched = false; }

  bool watched = false;
  bool down = false;
  int begun = 0;
  int asked = 0;
};

class FakeChannel final : public HelperChannel {
 public:
  void send(std::span<const std::byte> packet) noexcept override {
    sent.emplace_back(packet.begin(), packet.end());
  }

  // The packets of that kind which were sent since clear(), in their order.
  template <class Packet>
  std::vector<Packet> packets() const {
    std::vector<Packet> found;
    for (const auto& message : sent) {
      if (const auto packet = readPacket<Packet>(message))
        found.push_back(*packet);
    }
    return found;
  }
  void clear() { sent.clear(); }

  std::vector<std::vector<std::byte>> sent;
};

inline const OutputEvent kSync{EV_SYN, SYN_REPORT, 0};
inline OutputEvent keyEvent(std::uint16_t code, bool down) {
  return {EV_KEY, code, down ? 1 : 0};
}
inline OutputEvent relativeEvent(std::uint16_t code, std::int32_t value) {
  return {EV_REL, code, value};
}

inline constexpr DeviceAddress kSomeTrackball{0xA1D0, 0x2041, 0x0107, 0};
inline constexpr DeviceAddress kOtherTrackball{0xA1D0, 0x1020, 0x0100, 0};

// A record by which the buttons 0, 1 and 2 are the left, right and middle one of the mouse, and button 3 is
// for the helper.
inline DriverRecord someRecord() {
  DriverRecord record{};
  record.driverEnabled = 1;
  record.speed = kRecordNotSet;
  record.acceleration = kRecordNotSet;
  record.actionCount = kRecordActions;
  record.action[0].command = 1;
  record.action[1].command = 2;
  record.action[2].command = 3;
  record.action[3].command = 70;
  record.action[12].command = 20;
  return record;
}

inline InputFrame buttonFrame(Microseconds time, std::uint8_t button, bool pressed) {
  InputFrame frame;
  frame.time = time;
  frame.changeCount = 1;
  frame.change[0] = {button, pressed};
  return frame;
}

}  // namespace veltrix
