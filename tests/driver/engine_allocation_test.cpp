// The engine allocates nothing once it is made; this program counts every allocation.
#include <gtest/gtest.h>

#include <array>
#include <memory>

#include "driver/engine/engine.h"
#include "tests/support/counted_allocations.h"

namespace veltrix {
namespace {

DriverRecord busyRecord() {
  DriverRecord record{};
  record.driverEnabled = 1;
  record.speed = 25;
  record.acceleration = 150;
  record.inertialScroll = 1;
  record.actionCount = kRecordActions;
  constexpr auto kCommands =
      std::to_array<std::uint16_t>({1, 6, 7, 8, 10, 20, 24, 27, 3, 2, 25, 26, 20, 28, 29, 70});
  for (std::size_t slot = 0; slot < kRecordActions; ++slot)
    record.action[slot] = {kCommands[slot], 0x0300, 3, 0};
  return record;
}

TEST(EngineAllocation, CounterCounts) {
  const std::size_t before = test::countedAllocations();
  const auto memory = std::make_unique<int>(0);
  EXPECT_GT(test::countedAllocations(), before);
}

TEST(EngineAllocation, NothingIsAllocatedOnceTheEngineIsMade) {
  Engine engine(DeviceModel{});
  Output output;
  const DriverRecord record = busyRecord();
  std::size_t events = 0;
  const std::size_t before = test::countedAllocations();
  for (int step = 0; step < 100'000; ++step) {
    InputFrame frame;
    frame.time = Microseconds{std::int64_t{step} * 1000};
    frame.dx = step % 17 - 8;
    frame.dy = step % 13 - 6;
    frame.wheel = step % 50 == 0 ? 120 : 0;
    frame.changeCount = step % 5 == 0 ? 1 : 0;
    frame.change[0] = {static_cast<std::uint8_t>(step / 5 % 16), step / 80 % 2 == 0};
    if (step % 10'000 == 0)
      engine.apply(step % 20'000 == 0 ? record : DriverRecord{}, {100, 120, 500, 80, 1}, frame.time, output);
    engine.process(frame, static_cast<std::uint8_t>(step), output);
    if (engine.deadline() <= frame.time)
      engine.expire(frame.time, output);
    if (step % 7777 == 0)
      engine.resynchronize(static_cast<std::uint16_t>(step), frame.time, 0, output);
    events += output.events().size();
    output.clear();
  }
  engine.release(Microseconds{1'000'000'000}, output);
  EXPECT_EQ(test::countedAllocations(), before);
  EXPECT_GT(events, 100'000U);
}

}  // namespace
}  // namespace veltrix
