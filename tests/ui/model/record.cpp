#include "tests/ui/model/record.h"

#include <cmath>
#include <cstddef>

namespace veltrix::model {
namespace {

constexpr std::size_t kFirstSlot = 16;
constexpr std::size_t kSlotSize = 10;
constexpr int kSlots = 16;
constexpr int kFallbackCommand = 200;
constexpr int kKeystroke = 10;

std::uint8_t speedByte(const Json& options) {
  const int speed = intOf(options, "speed");
  return speed >= 80 && speed <= 6400 ? static_cast<std::uint8_t>(speed / 20) : 0xFF;
}

std::uint8_t accelerationByte(const Json& options) {
  if (!options.contains("acceleration")) {
    return 0xFF;
  }
  const double factor = boolOf(options, "accelerate") ? realOf(options, "acceleration") : 0.0;
  return factor >= 0 && factor <= 4 ? static_cast<std::uint8_t>(static_cast<int>(factor * 100.0)) : 0xFF;
}

std::uint8_t keysByte(const Json& options, const char* on, const char* mask) {
  return boolOf(options, on) ? static_cast<std::uint8_t>(lowBitsOf(options, mask) / 256) : std::uint8_t{0};
}

// In the order of this machine, which is the little-endian one.
void putWord(Record& record, std::size_t at, std::uint16_t word) {
  record.at(at) = static_cast<std::uint8_t>(word % 256);
  record.at(at + 1) = static_cast<std::uint8_t>(word / 256);
}

void putAction(Record& record, int slot, const Json& entry, const Json& fallback) {
  const Json* action = &actionOf(entry, slot);
  if (lowBitsOf(*action, "cmd") == kFallbackCommand && fallback.contains("buttons")) {
    action = &actionOf(fallback, slot);
  }
  const std::uint16_t command = lowBitsOf(*action, "cmd");
  const std::size_t at = kFirstSlot + kSlotSize * static_cast<std::size_t>(slot);
  putWord(record, at, command);
  if (isClick(command) || command == kKeystroke) {
    putWord(record, at + 2, lowBitsOf(*action, "mod"));
  }
  if (isScroll(command)) {
    putWord(record, at + 4, lowBitsOf(*action, "cnt"));
  } else if (command == kKeystroke) {
    putWord(record, at + 4, lowBitsOf(*action, "key"));
  }
}

}  // namespace

bool isClick(int command) {
  return (command >= 1 && command <= 8) || (command >= 12 && command <= 18);
}

bool isScroll(int command) {
  return command >= 20 && command <= 23;
}

Record recordOf(const Json& entry, const Json& fallback) {
  Record record{};
  record[1] = record[2] = 0xFF;
  if (intOf(entry, "dict version") != 1) {
    return record;
  }
  const Json& options = entry.at("options");
  record[0] = static_cast<std::uint8_t>(intOf(entry, "driver enabled"));
  record[1] = speedByte(options);
  record[2] = accelerationByte(options);
  int bit = 1;
  for (const char* axis : {"invert x", "invert y", "invert z", "swap xy"}) {
    record[3] = static_cast<std::uint8_t>(record[3] + (boolOf(options, axis) ? bit : 0));
    bit *= 2;
  }
  record[4] = boolOf(options, "invert wheel") ? 1 : 0;
  record[5] = keysByte(options, "slow", "slow keys");
  record[6] = keysByte(options, "single", "single keys");
  record[8] = boolOf(options, "inertial scroll") ? 1 : 0;
  for (int slot = 0; slot < kSlots; ++slot) {
    if (hasAction(entry, slot)) {
      putAction(record, slot, entry, fallback);
      ++record[7];
    }
  }
  return record;
}

}  // namespace veltrix::model
