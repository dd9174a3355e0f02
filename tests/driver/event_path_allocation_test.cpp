// What a trackball reports passes through the whole driver without an allocation; this program counts them.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/input.h>

#include <array>

#include "driver/frame_decoder.h"
#include "driver/group_writer.h"
#include "tests/driver/core_on_fakes.h"
#include "tests/support/counted_allocations.h"
#include "util/file_descriptor.h"

namespace veltrix {
namespace {

// Writes to where everything disappears.
class NullSink final : public EventSink {
 public:
  int open() noexcept override { return 0; }
  void close() noexcept override {}
  bool isOpen() const noexcept override { return true; }
  int write(std::span<const OutputEvent> groups) noexcept override {
    events += groups.size();
    return fWriter.write(groups);
  }

  std::size_t events = 0;

 private:
  FileDescriptor fNull{::open("/dev/null", O_WRONLY | O_CLOEXEC)};
  FileDescriptor fOtherNull{::open("/dev/null", O_WRONLY | O_CLOEXEC)};
  GroupWriter fWriter{fNull.get(), fOtherNull.get()};
};

class NullChannel final : public HelperChannel {
 public:
  void send(std::span<const std::byte> /*packet*/) noexcept override { ++packets; }
  std::size_t packets = 0;
};

input_event eventOf(int step, std::uint16_t type, std::uint16_t code, std::int32_t value) {
  input_event event{};
  event.input_event_sec = 2 + step / 1000;
  event.input_event_usec = step % 1000 * 1000;
  event.type = type;
  event.code = code;
  event.value = value;
  return event;
}

TEST(EventPathAllocation, EventsPassWithoutAllocating) {
  CoreOnFakes<NullSink, NullChannel> driver;
  FrameDecoder decoder;
  driver.plug(driver.ball);
  driver.apply();
  driver.core.monitor(true);
  ASSERT_TRUE(driver.ball.grabbed);

  const std::size_t before = test::countedAllocations();
  for (int step = 0; step < 50'000; ++step) {
    const auto button = static_cast<std::uint16_t>(BTN_MOUSE + step / 2 % 4);
    for (const input_event& event :
         {eventOf(step, EV_REL, REL_X, step % 7 - 3),
          eventOf(step, EV_REL, REL_WHEEL, step % 11 == 0 ? 1 : 0),
          eventOf(step, EV_KEY, button, step % 2 == 0 ? 1 : 0), eventOf(step, EV_SYN, SYN_REPORT, 0)}) {
      if (decoder.add(event) == FrameDecoder::Outcome::kFrame)
        driver.ball.listener->frameCame(decoder.frame());
    }
    driver.loop.time = decoder.frame().time;
    driver.core.modifiersChanged(step % 100 == 0 ? kHeldShift : 0);
    driver.core.lampsChanged(step % 100 == 0 ? kCapsLockLamp : 0);
    driver.core.expire(driver.loop.time);
  }
  EXPECT_EQ(test::countedAllocations(), before);
  EXPECT_GT(driver.sink.events, 100'000U);
  EXPECT_GT(driver.channel.packets, 40'000U);
}

}  // namespace
}  // namespace veltrix
