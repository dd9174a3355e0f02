#include <cstdlib>
#include <iterator>

#include "driver/frame_decoder.h"
#include "fuzz/byte_source.h"
#include "tests/driver/core_on_fakes.h"

// Events as a broken or hostile device could report them, in any order and at any time, and what becomes of
// them behind the decoder: frames keep their rules, and once the helper is gone nothing is down any more.
namespace {

using namespace veltrix;

void require(bool condition) {
  if (!condition)
    std::abort();
}

// Knows what is down on the virtual devices.
class WatchedSink final : public EventSink {
 public:
  int open() noexcept override { return 0; }
  void close() noexcept override {}
  bool isOpen() const noexcept override { return true; }
  int write(std::span<const OutputEvent> groups) noexcept override {
    require(!groups.empty() && groups.back() == kSync);
    for (const OutputEvent& event : groups) {
      if (event.type != EV_KEY)
        continue;
      require(event.code < KEY_CNT && (event.value == 0 || event.value == 1));
      bool& down = fDown[event.code];
      require(down != (event.value == 1));
      down = event.value == 1;
    }
    return 0;
  }
  bool anythingDown() const {
    for (const bool down : fDown) {
      if (down)
        return true;
    }
    return false;
  }

 private:
  bool fDown[KEY_CNT] = {};
};

input_event eventOf(ByteSource& source) {
  constexpr std::uint16_t kTypes[] = {EV_SYN, EV_KEY, EV_REL, EV_KEY, EV_REL, EV_MSC, EV_ABS, 0xFFFF};
  input_event event{};
  event.input_event_sec = static_cast<decltype(event.input_event_sec)>(source.byte());
  event.input_event_usec = static_cast<decltype(event.input_event_usec)>(source.word() * 31);
  event.type = kTypes[source.below(std::size(kTypes))];
  event.code = source.byte();
  if (event.type == EV_KEY)
    event.code = static_cast<std::uint16_t>(BTN_MOUSE - 4 + event.code % 24);
  if (event.type == EV_SYN)
    event.code = event.code % 8 == 7 ? SYN_DROPPED : event.code % 4 == 3 ? source.word() : SYN_REPORT;
  event.value = static_cast<std::int8_t>(source.byte());
  if (event.type == EV_KEY)
    event.value &= 3;
  else if (event.value == 127)
    event.value = static_cast<std::int32_t>(source.word() << 16U | source.word());
  return event;
}

void checkFrame(const InputFrame& frame, std::uint16_t before, std::uint16_t after) {
  require(frame.changeCount <= kMostButtonChanges && frame.time >= Microseconds{0} && frame.time < kNever);
  std::uint16_t down = before;
  for (std::size_t i = 0; i < frame.changeCount; ++i) {
    const ButtonChange& change = frame.change[i];
    require(change.button < kMostButtons);
    const auto bit = static_cast<std::uint16_t>(1U << change.button);
    require(((down & bit) != 0) != change.pressed);
    down ^= bit;
  }
  require(down == after);
  require(frame.changeCount > 0 || frame.dx != 0 || frame.dy != 0 || frame.wheel != 0 || frame.hwheel != 0);
}

DriverRecord recordOf(ByteSource& source) {
  DriverRecord record = someRecord();
  record.speed = source.byte();
  record.acceleration = source.byte();
  record.inertialScroll = source.byte() & 1U;
  for (RecordAction& action : record.action) {
    action.command = source.byte();
    action.modifiers = static_cast<std::uint16_t>(source.byte() << 8U);
    action.argument = source.byte();
  }
  return record;
}

// The events of one device, decoded and carried on.
void play(ByteSource& source, FakeLoop& loop, DriverCore& core, FakeTrackballState& state) {
  FrameDecoder decoder;
  decoder.setHighResolution((source.byte() & 1U) != 0, (source.byte() & 1U) != 0);
  std::uint16_t known = 0;
  while (!source.isAtEnd() && state.listener != nullptr) {
    switch (decoder.add(eventOf(source))) {
      case FrameDecoder::Outcome::kNothing:
        break;
      case FrameDecoder::Outcome::kFrame:
        checkFrame(decoder.frame(), known, decoder.buttonsDown());
        known = decoder.buttonsDown();
        state.listener->frameCame(decoder.frame());
        break;
      case FrameDecoder::Outcome::kLost:
        known = source.word();
        decoder.start(known);
        state.listener->eventsLost(known);
        break;
    }
    if (source.below(8) == 0) {
      loop.time += Microseconds{source.word()};
      core.expire(loop.time);
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  ByteSource source({reinterpret_cast<const char*>(data), size});
  CoreOnFakes<WatchedSink, FakeChannel> driver;
  driver.plug(driver.ball);
  const DriverRecord record = recordOf(source);
  const ScrollParameters scroll{source.byte(), source.byte(), source.byte(), source.byte(), source.byte()};
  driver.apply(record, kSomeTrackball, scroll);
  driver.core.monitor(true);
  play(source, driver.loop, driver.core, driver.ball);
  driver.core.helperGone();
  require(!driver.sink.anythingDown() && driver.core.deadline() == kNever);
  return 0;
}
