#include "driver/keyboard_lamps.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <linux/input.h>
#include <sys/socket.h>

#include <array>
#include <span>
#include <vector>

#include "driverlink/packets.h"
#include "tests/driver/fake_poll_loop.h"
#include "util/file_descriptor.h"

namespace veltrix {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class Told final : public LampListener {
 public:
  void lampsChanged(std::uint16_t lit) noexcept override { all.push_back(lit); }
  std::vector<std::uint16_t> all;
};

input_event eventOf(std::uint16_t type, std::uint16_t code, std::int32_t value) {
  input_event event{};
  event.type = type;
  event.code = code;
  event.value = value;
  return event;
}

// The other end is the kernel's.
class KeyboardLampsTest : public ::testing::Test {
 protected:
  KeyboardLampsTest() {
    std::array<int, 2> ends{};
    EXPECT_EQ(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0, ends.data()), 0);
    keyboard.reset(ends[0]);
    kernel.reset(ends[1]);
    lamps.setListener(&told);
  }
  void light(std::vector<input_event> events) {
    const auto bytes = std::as_bytes(std::span(events));
    ASSERT_EQ(::send(kernel.get(), bytes.data(), bytes.size(), 0), static_cast<ssize_t>(bytes.size()));
    loop.run();
  }

  FileDescriptor keyboard;
  FileDescriptor kernel;
  testing::FakePollLoop loop;
  Told told;
  KeyboardLamps lamps{loop};
};

TEST_F(KeyboardLampsTest, EachChangeIsTold) {
  lamps.open(keyboard.get());
  light({eventOf(EV_LED, LED_CAPSL, 1)});
  light({eventOf(EV_LED, LED_NUML, 1)});
  light({eventOf(EV_LED, LED_CAPSL, 0)});
  EXPECT_THAT(told.all, ElementsAre(kCapsLockLamp, kCapsLockLamp | kNumLockLamp, kNumLockLamp));
}

TEST_F(KeyboardLampsTest, WhatComesTogetherIsToldOnce) {
  lamps.open(keyboard.get());
  light({eventOf(EV_LED, LED_CAPSL, 1), eventOf(EV_LED, LED_CAPSL, 0), eventOf(EV_LED, LED_NUML, 1)});
  light({eventOf(EV_LED, LED_NUML, 1)});
  EXPECT_THAT(told.all, ElementsAre(kNumLockLamp));
}

TEST_F(KeyboardLampsTest, NothingElseIsALamp) {
  lamps.open(keyboard.get());
  light({eventOf(EV_LED, LED_SCROLLL, 1), eventOf(EV_REP, REP_DELAY, 250), eventOf(EV_KEY, LED_CAPSL, 1)});
  EXPECT_THAT(told.all, IsEmpty());
}

TEST_F(KeyboardLampsTest, LampsOfAKeyboardThatGoesAreOut) {
  lamps.open(keyboard.get());
  light({eventOf(EV_LED, LED_CAPSL, 1)});
  lamps.close();
  EXPECT_THAT(told.all, ElementsAre(kCapsLockLamp, 0));
  EXPECT_FALSE(loop.has(keyboard.get()));
  light({eventOf(EV_LED, LED_NUML, 1)});
  EXPECT_THAT(told.all, ElementsAre(kCapsLockLamp, 0));
}

TEST_F(KeyboardLampsTest, KeyboardThatHasEndedIsLeft) {
  lamps.open(keyboard.get());
  kernel.reset();
  loop.runOnce();
  EXPECT_FALSE(loop.has(keyboard.get()));
}

TEST_F(KeyboardLampsTest, LoopWithoutRoomLeavesThemOut) {
  loop.refusesMore = true;
  lamps.open(keyboard.get());
  light({eventOf(EV_LED, LED_CAPSL, 1)});
  EXPECT_THAT(told.all, IsEmpty());
}

TEST_F(KeyboardLampsTest, EndOfTheLampsTellsNobody) {
  {
    KeyboardLamps own(loop);
    own.setListener(&told);
    own.open(keyboard.get());
    light({eventOf(EV_LED, LED_CAPSL, 1)});
    told.all.clear();
  }
  EXPECT_THAT(told.all, IsEmpty());
  EXPECT_FALSE(loop.has(keyboard.get()));
}

}  // namespace
}  // namespace veltrix
