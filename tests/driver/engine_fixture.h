#pragma once

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "driver/engine/engine.h"
#include "tests/driver/played_events.h"

namespace veltrix::test {

// An engine, the hand on its trackball, and the time that the test lets pass, in milliseconds.
class EngineTest : public ::testing::Test {
 protected:
  static constexpr ScrollParameters kRollsOn{
      .triggerTime = 250, .timeDecay = 120, .timeStop = 500, .countDecay = 80, .countStop = 1};
  static constexpr RecordAction kLeftClick{1, 0, 0, 0};
  static constexpr RecordAction kRightClick{2, 0, 0, 0};
  static constexpr RecordAction kMiddleClick{3, 0, 0, 0};
  static RecordAction command(std::uint16_t code, std::uint16_t argument = 0) {
    return {code, 0, argument, 0};
  }

  // What a detent of the wheel gives that scrolls as an ordinary mouse.
  inline static const std::string kDetentUp = together(by(REL_WHEEL_HI_RES, 120), by(REL_WHEEL, 1));

  // A record whose buttons do nothing yet and whose wheel scrolls.
  static DriverRecord emptyRecord() {
    DriverRecord record{};
    record.driverEnabled = 1;
    record.speed = record.acceleration = kRecordNotSet;
    record.actionCount = kRecordActions;
    record.action[kWheelSlot] = {20, 0, 3, 0};
    return record;
  }

  // As emptyRecord(), with these commands in the slots.
  struct Given {
    std::uint8_t slot;
    RecordAction action;
  };
  static DriverRecord recordOf(const std::vector<Given>& actions) {
    DriverRecord record = emptyRecord();
    for (const Given& given : actions) record.action[given.slot] = given.action;
    return record;
  }

  void apply(const DriverRecord& record, const ScrollParameters& parameters = {}) {
    fEngine.apply(record, parameters, fNow, fOutput);
  }
  void press(std::uint8_t button) { change(button, true); }
  void release(std::uint8_t button) { change(button, false); }
  void click(std::uint8_t button) {
    press(button);
    release(button);
  }
  void change(std::uint8_t button, bool pressed) {
    InputFrame frame;
    frame.changeCount = 1;
    frame.change[0] = {button, pressed};
    send(frame);
  }
  void move(std::int32_t dx, std::int32_t dy) {
    InputFrame frame;
    frame.dx = dx;
    frame.dy = dy;
    send(frame);
  }
  void turn(std::int32_t wheel, std::int32_t hwheel = 0) {
    InputFrame frame;
    frame.wheel = wheel;
    frame.hwheel = hwheel;
    send(frame);
  }
  void send(InputFrame frame) {
    frame.time = fNow;
    fEngine.process(frame, fHeldModifiers, fOutput);
  }

  // Lets time pass; what falls due in it is done at its time.
  void wait(int milliseconds) {
    const Microseconds until = fNow + Microseconds{std::int64_t{milliseconds} * 1000};
    while (fEngine.deadline() <= until) {
      fNow = fEngine.deadline();
      fEngine.expire(fNow, fOutput);
    }
    fNow = until;
  }

  std::vector<std::string> taken() {
    auto groups = groupsOf(fOutput);
    EXPECT_FALSE(fOutput.overflowed());
    fOutput.clear();
    return groups;
  }
  std::vector<ButtonNotice> notices() const {
    const auto notices = fOutput.notices();
    return {notices.begin(), notices.end()};
  }

  Engine fEngine{DeviceModel{}};
  Output fOutput;
  Microseconds fNow{5'000'000};
  std::uint8_t fHeldModifiers = 0;
};

}  // namespace veltrix::test
