// Says what the engine gives out, for tests that compare it with what leaves the driver on a real kernel.
//
// Reads lines, times in microseconds from any start:
//   model PRODUCT                                a fresh engine; PRODUCT in hex
//   apply TIME RECORD T1 T2 T3 T4 T5             RECORD in 352 hex digits, then the scroll parameters
//   frame TIME DX DY WHEEL HWHEEL HELD [BUTTON+|BUTTON-]...    HELD are modifier keys
//   until TIME                                   carries out what falls due until then
// and answers each with lines "TYPE CODE VALUE" without ends of groups, then "deadline TIME", "deadline
// never" or "wrong". Presses that two buttons share are given once, as the driver does.
#include <linux/input-event-codes.h>

#include <charconv>
#include <cstdint>
#include <cstring>
#include <iostream>
#include <memory>
#include <optional>
#include <sstream>
#include <string>

#include "driver/engine/engine.h"
#include "driver/event_sink.h"
#include "driver/output_mixer.h"

namespace {

using namespace veltrix;

class PrintingSink final : public EventSink {
 public:
  int open() noexcept override { return 0; }
  void close() noexcept override {}
  bool isOpen() const noexcept override { return true; }
  int write(std::span<const OutputEvent> groups) noexcept override {
    for (const OutputEvent& event : groups) {
      if (event.type != EV_SYN)
        std::cout << event.type << ' ' << event.code << ' ' << event.value << '\n';
    }
    return 0;
  }
};

std::optional<DriverRecord> readRecord(const std::string& digits) {
  DriverRecord record{};
  auto* bytes = reinterpret_cast<std::uint8_t*>(&record);
  if (digits.size() != 2 * sizeof record)
    return std::nullopt;
  for (std::size_t i = 0; i < sizeof record; ++i) {
    const char* first = digits.data() + 2 * i;
    if (std::from_chars(first, first + 2, bytes[i], 16).ptr != first + 2)
      return std::nullopt;
  }
  return record;
}

class Predictor {
 public:
  bool take(const std::string& line) {
    std::istringstream words(line);
    std::string kind;
    words >> kind;
    if (kind == "model")
      return model(words);
    if (fEngine == nullptr)
      return false;
    std::int64_t time = 0;
    words >> time;
    const Microseconds now{time};
    if (kind == "apply")
      return apply(words, now);
    if (kind == "frame")
      return frame(words, now);
    if (kind == "until")
      expire(now);
    return kind == "until";
  }

  void printDeadline() const {
    const Microseconds deadline = fEngine->deadline();
    std::cout << "deadline " << (deadline == kNever ? "never" : std::to_string(deadline.count()))
              << std::endl;
  }

 private:
  bool model(std::istringstream& words) {
    unsigned product = 0;
    words >> std::hex >> product;
    fEngine = std::make_unique<Engine>(deviceModelOf(static_cast<std::uint16_t>(product)));
    fMixer.forget();
    return !words.fail();
  }

  bool apply(std::istringstream& words, Microseconds now) {
    std::string digits;
    ScrollParameters scroll{};
    words >> digits >> scroll.triggerTime >> scroll.timeDecay >> scroll.timeStop >> scroll.countDecay >>
        scroll.countStop;
    const auto record = readRecord(digits);
    if (!record || words.fail())
      return false;
    fOutput.clear();
    fEngine->apply(*record, scroll, now, fOutput);
    print();
    return true;
  }

  bool frame(std::istringstream& words, Microseconds now) {
    InputFrame frame{.time = now};
    unsigned held = 0;
    words >> frame.dx >> frame.dy >> frame.wheel >> frame.hwheel >> held;
    if (words.fail())
      return false;
    std::string change;
    while (words >> change && frame.changeCount < kMostButtonChanges) {
      const int button = std::stoi(change);
      frame.change[frame.changeCount++] = {static_cast<std::uint8_t>(button), change.back() == '+'};
    }
    expire(now);
    fOutput.clear();
    fEngine->process(frame, static_cast<std::uint8_t>(held), fOutput);
    print();
    return true;
  }

  void expire(Microseconds now) {
    while (fEngine->deadline() <= now) {
      fOutput.clear();
      fEngine->expire(fEngine->deadline(), fOutput);
      print();
    }
  }

  void print() { fMixer.write(fOutput.events()); }

  std::unique_ptr<Engine> fEngine;
  PrintingSink fSink;
  OutputMixer fMixer{fSink};
  Output fOutput;
};

}  // namespace

int main() {
  Predictor predictor;
  std::string line;
  while (std::getline(std::cin, line)) {
    if (predictor.take(line))
      predictor.printDeadline();
    else
      std::cout << "wrong" << std::endl;
  }
  return 0;
}
