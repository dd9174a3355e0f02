#include "fuzz/engine_script.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "fuzz/byte_source.h"
#include "fuzz/engine_watcher.h"

using veltrix::DriverRecord;
using veltrix::InputFrame;
using veltrix::Microseconds;
using veltrix::RecordAction;

namespace {

constexpr auto kCommands =
    std::to_array<std::uint16_t>({0,  1,  2,  3,  4,  5,  6,  7,  8,  9,  10, 11, 12, 15,  18,  19,
                                  20, 21, 22, 23, 24, 25, 26, 27, 28, 29, 30, 54, 70, 146, 200, 65535});

// How often deadlines may follow each other without time passing.
constexpr int kMostAtOneTime = 64;

// How many deadlines may follow the last button; inertia has most of them.
constexpr int kMostCallsToTheEnd = 100'000;
constexpr std::uint16_t kDragLock = 7;

template <class Value>
Value raw(ByteSource& source) {
  Value value{};
  const std::string_view bytes = source.take(sizeof value);
  std::memcpy(&value, bytes.data(), bytes.size());
  return value;
}

class Script {
 public:
  explicit Script(std::string_view bytes) : fSource(bytes) {}

  EngineRun run() {
    while (!fSource.isAtEnd() && fWatcher.problem().empty() && !fIsStuck) step();
    letGo();
    fWatcher.release(fNow);
    return {fIsStuck ? "a deadline is always due" : fWatcher.problem(), fWatcher.transcript()};
  }

 private:
  void step() {
    switch (fSource.below(12)) {
      case 0:
      case 1:
        return sendMotion();
      case 2:
      case 3:
      case 4:
        return sendButton();
      case 5:
        return sendWheel();
      case 6:
        return fWatcher.process(anyFrame(), fSource.byte());
      case 7:
        return pass();
      case 8:
        return applyRecord(record());
      case 9:
        return fWatcher.modifiersChanged(fSource.byte());
      case 10:
        return fWatcher.resynchronize(fSource.word(), fNow, fSource.byte());
      default:
        return spoil();
    }
  }

  // Every button comes up and everything that waits is done; only a lock keeps anything down then.
  void letGo() {
    fWatcher.resynchronize(0, fNow, 0);
    int calls = 0;
    while (fWatcher.deadline() != veltrix::kNever && !fIsStuck) {
      fWatcher.expire(fWatcher.deadline());
      fIsStuck = ++calls > kMostCallsToTheEnd;
    }
    if (!fMayLock)
      fWatcher.requireNothingDown();
  }

  std::int32_t signedByte() { return std::int32_t{fSource.byte()} - 128; }

  void sendMotion() {
    InputFrame frame = frameNow();
    frame.dx = signedByte();
    frame.dy = signedByte();
    fWatcher.process(frame, 0);
  }
  void sendButton() {
    InputFrame frame = frameNow();
    const unsigned choice = fSource.byte();
    frame.changeCount = 1;
    frame.change[0] = {static_cast<std::uint8_t>(choice % veltrix::kMostButtons), choice >= 128};
    fWatcher.process(frame, 0);
  }
  void sendWheel() {
    InputFrame frame = frameNow();
    frame.wheel = signedByte() * 15;
    frame.hwheel = signedByte() / 16 * 120;
    fWatcher.process(frame, 0);
  }

  // Lets up to a quarter of a second or of a minute pass, everything served when it is due.
  void pass() {
    const unsigned length = fSource.byte();
    const Microseconds until =
        fNow + Microseconds{std::int64_t{length} * ((length & 1U) != 0 ? 1000 : 250'000)};
    int atOneTime = 0;
    while (fWatcher.deadline() <= until && !fIsStuck) {
      atOneTime = fWatcher.deadline() > fNow ? 0 : atOneTime + 1;
      fIsStuck = atOneTime > kMostAtOneTime;
      fNow = std::max(fNow, fWatcher.deadline());
      fWatcher.expire(fNow);
    }
    fNow = until;
  }

  // What no clock and no device does.
  void spoil() {
    const std::size_t how = fSource.below(4);
    if (how == 0)
      fWatcher.expire(anyTime());
    if (how == 1)
      fWatcher.release(fNow);
    if (how == 2)
      fNow = std::max(Microseconds{0}, fNow - Microseconds{std::int64_t{fSource.word()} * 100});
    if (how == 3) {
      InputFrame frame = anyFrame();
      frame.time = anyTime();
      fWatcher.process(frame, fSource.byte());
    }
  }

  // Before the machine was started or long after it; short of the time at which the engine's clock ends and
  // nothing falls due any more.
  Microseconds anyTime() { return Microseconds{raw<std::int64_t>(fSource) / 8}; }

  InputFrame frameNow() {
    InputFrame frame;
    fNow += Microseconds{std::int64_t{fSource.byte()} * 125};
    frame.time = fNow;
    return frame;
  }
  InputFrame anyFrame() {
    InputFrame frame = frameNow();
    frame.dx = raw<std::int32_t>(fSource);
    frame.dy = raw<std::int32_t>(fSource);
    frame.wheel = raw<std::int32_t>(fSource);
    frame.hwheel = raw<std::int32_t>(fSource);
    frame.changeCount = fSource.byte();
    for (auto& change : frame.change) {
      const unsigned choice = fSource.byte();
      change = {static_cast<std::uint8_t>(choice % 32), choice >= 128};
    }
    return frame;
  }

  void applyRecord(const DriverRecord& record) {
    fWatcher.apply(record, raw<veltrix::ScrollParameters>(fSource), fNow);
    fMayLock = std::any_of(std::begin(record.action), std::end(record.action),
                           [](const RecordAction& action) { return action.command == kDragLock; });
  }
  DriverRecord record() {
    if (fSource.below(4) == 0)
      return raw<DriverRecord>(fSource);
    DriverRecord record = raw<DriverRecord>(fSource);
    record.driverEnabled = 1;
    record.actionCount = veltrix::kRecordActions;
    for (RecordAction& action : record.action) action.command = kCommands[action.command % kCommands.size()];
    return record;
  }

  ByteSource fSource;
  EngineWatcher fWatcher;
  Microseconds fNow{1'000'000};
  bool fIsStuck = false;
  bool fMayLock = false;
};

}  // namespace

EngineRun runEngineScript(std::string_view bytes) {
  return Script(bytes).run();
}
