#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "driver/engine/action_player.h"
#include "tests/driver/played_events.h"

namespace veltrix::test {

// A player of actions and the time that the test lets pass, in milliseconds.
class ActionPlayerTest : public ::testing::Test {
 protected:
  using Groups = std::vector<std::string>;

  static constexpr std::uint8_t kVoice = 4;
  static constexpr std::uint8_t kOtherVoice = 5;
  static constexpr std::uint16_t kShift = 0x0200;
  static constexpr std::uint16_t kClick = 1;
  static constexpr std::uint16_t kDoubleClick = 6;
  static constexpr std::uint16_t kDragLock = 7;
  static constexpr std::uint16_t kTripleClick = 8;

  Stage stage() { return {fNow, fWheel, fOutput}; }

  void begin(std::uint16_t command, std::uint16_t modifiers = 0, std::uint16_t argument = 0,
             std::uint8_t voice = kVoice) {
    fPlayer.begin(voice, planOf({command, modifiers, argument, 0}), stage());
  }
  void end(std::uint8_t voice = kVoice, bool isBelated = false) { fPlayer.end(voice, isBelated, stage()); }
  void tap(std::uint16_t command, std::uint16_t argument = 0) {
    fPlayer.tap(kWheelSlot, planOf({command, 0, argument, 0}), stage());
  }

  // Lets time pass and takes what falls due in it, each at its time.
  void wait(int milliseconds) {
    const Microseconds until = fNow + Microseconds{std::int64_t{milliseconds} * 1000};
    while (fPlayer.deadline() <= until) {
      fNow = fPlayer.deadline();
      fPlayer.expire(stage());
    }
    fNow = until;
  }

  std::vector<std::string> taken() {
    auto groups = groupsOf(fOutput);
    fOutput.clear();
    return groups;
  }

  WheelScroll fWheel{DeviceModel{}};
  ActionPlayer fPlayer;
  Output fOutput;
  Microseconds fNow{1'000'000};
};

}  // namespace veltrix::test
