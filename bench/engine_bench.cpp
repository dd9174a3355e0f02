// What the engine costs: on one core, without a kernel. Each iteration is one frame of a trackball; an event
// is one that evdev would have delivered, the synchronisation at a frame's end counted too.
#include <benchmark/benchmark.h>

#include <array>
#include <cstdint>

#include "driver/engine/engine.h"
#include "tests/support/counted_allocations.h"

namespace {

using veltrix::DriverRecord;
using veltrix::Engine;
using veltrix::InputFrame;
using veltrix::Microseconds;
using veltrix::Output;

constexpr veltrix::ScrollParameters kRollsOn{
    .triggerTime = 250, .timeDecay = 120, .timeStop = 500, .countDecay = 80, .countStop = 1};
constexpr std::size_t kFrames = 4096;
constexpr Microseconds kReportTime{125};  // 8000 reports in a second

// Everything that costs time is on: another resolution, acceleration, chords, inertia, modifiers to look for.
DriverRecord richRecord() {
  DriverRecord record{};
  record.driverEnabled = 1;
  record.speed = 25;
  record.acceleration = 150;
  record.slowModifiers = veltrix::kHeldShift;
  record.singleModifiers = veltrix::kHeldOption;
  record.inertialScroll = 1;
  record.actionCount = veltrix::kRecordActions;
  record.action[0] = {1, 0, 0, 0};
  record.action[1] = {2, 0x0200, 0, 0};
  record.action[2] = {10, 0x1000, 8, 0};
  record.action[3] = {70, 0, 0, 0};
  record.action[veltrix::kChordOfFirstTwo] = {3, 0, 0, 0};
  record.action[veltrix::kWheelSlot] = {20, 0, 3, 0};
  return record;
}

struct Frames {
  std::array<InputFrame, kFrames> frame{};
  std::size_t events = 0;  // of all of them

  void count() {
    for (const InputFrame& each : frame) {
      events += 1U + (each.dx != 0 ? 1U : 0U) + (each.dy != 0 ? 1U : 0U) + each.changeCount +
                (each.wheel != 0 ? 2U : 0U);
    }
  }
};

// A ball that turns round and round.
Frames motion() {
  Frames frames;
  for (std::size_t index = 0; index < kFrames; ++index) {
    frames.frame[index].dx = 1 + static_cast<std::int32_t>(index % 7);
    frames.frame[index].dy = -1 - static_cast<std::int32_t>(index % 5);
  }
  frames.count();
  return frames;
}

// The same, with a press or release in each eighth frame and a detent of the wheel in each sixteenth.
Frames mixture() {
  Frames frames = motion();
  frames.events = 0;
  for (std::size_t index = 0; index < kFrames; index += 8) {
    InputFrame& frame = frames.frame[index];
    const std::size_t change = index / 8;
    frame.changeCount = 1;
    frame.change[0] = {static_cast<std::uint8_t>(change / 2 % 4), change % 2 == 0};
    frame.wheel = change % 2 == 0 ? veltrix::kHiResPerDetent : 0;
  }
  frames.count();
  return frames;
}

void run(benchmark::State& state, const Frames& frames, const DriverRecord* record) {
  Engine engine(veltrix::DeviceModel{});
  Output output;
  if (record != nullptr)
    engine.apply(*record, kRollsOn, Microseconds{0}, output);
  Microseconds now{0};
  std::size_t index = 0;
  const std::size_t allocations = veltrix::test::countedAllocations();
  while (state.KeepRunning()) {
    InputFrame frame = frames.frame[index++ % kFrames];
    frame.time = now += kReportTime;
    output.clear();
    engine.process(frame, 0, output);
    if (engine.deadline() <= now)
      engine.expire(now, output);
    benchmark::DoNotOptimize(output.events().data());
    benchmark::ClobberMemory();
  }
  state.counters["allocations"] = static_cast<double>(veltrix::test::countedAllocations() - allocations);
  const double eventsOfFrame = static_cast<double>(frames.events) / static_cast<double>(kFrames);
  state.counters["events"] = benchmark::Counter(static_cast<double>(state.iterations()) * eventsOfFrame,
                                                benchmark::Counter::kIsRate);
}

void BM_PlainMotion(benchmark::State& state) {
  static const Frames kMotion = motion();
  run(state, kMotion, nullptr);
}
BENCHMARK(BM_PlainMotion);

void BM_Motion(benchmark::State& state) {
  static const Frames kMotion = motion();
  const DriverRecord record = richRecord();
  run(state, kMotion, &record);
}
BENCHMARK(BM_Motion);

void BM_Mixture(benchmark::State& state) {
  static const Frames kMixture = mixture();
  const DriverRecord record = richRecord();
  run(state, kMixture, &record);
}
BENCHMARK(BM_Mixture);

}  // namespace

BENCHMARK_MAIN();
