// What holds for the engine whatever comes, in any order and at any time.
#include <gmock/gmock.h>
#include <rapidcheck/gtest.h>

#include <string>
#include <vector>

#include "driver/engine/engine.h"
#include "fuzz/engine_script.h"
#include "fuzz/engine_watcher.h"

namespace veltrix {
namespace {

// All bytes alike; characters as the library makes them would hardly ever press a button.
rc::Gen<std::string> scripts() {
  const auto byte =
      rc::gen::map(rc::gen::inRange(0, 256), [](int value) { return static_cast<char>(value); });
  return rc::gen::scale(20.0, rc::gen::container<std::string>(byte));
}

// The watcher looks at every call: keys alternate, groups are whole and of one device, notices come in
// pairs, the output never overflows, and a release leaves nothing down.
RC_GTEST_PROP(EngineProperties, NothingBreaksTheRulesOfTheDevices, ()) {
  RC_ASSERT(runEngineScript(*scripts()).problem == "");
}

RC_GTEST_PROP(EngineProperties, EqualInputGivesEqualOutput, ()) {
  const std::string script = *scripts();
  RC_ASSERT(runEngineScript(script).transcript == runEngineScript(script).transcript);
}

TEST(EngineProperties, ScriptsDoPlaySomething) {
  const auto run = [](std::initializer_list<unsigned char> bytes) {
    return runEngineScript({reinterpret_cast<const char*>(bytes.begin()), bytes.size()}).transcript;
  };
  EXPECT_NE(run({}), run({2, 0, 128}));
  EXPECT_NE(run({2, 0, 128}), run({2, 0, 129}));
}

// All sixteen buttons with everything that one action can write, pressed and released in one frame.
TEST(EngineProperties, FullestFrameFindsRoom) {
  for (std::uint16_t command : std::to_array<std::uint16_t>({1, 6, 7, 8, 10, 20, 27, 70})) {
    EngineWatcher watcher;
    DriverRecord record{};
    record.driverEnabled = 1;
    record.actionCount = kRecordActions;
    for (RecordAction& action : record.action) action = {command, 0x1F00, 0, 0};
    watcher.apply(record, {}, Microseconds{0});
    for (int round = 0; round < 4; ++round) {
      InputFrame frame;
      frame.dx = frame.dy = frame.wheel = frame.hwheel = -2147483647;
      for (auto& change : frame.change) {
        const auto button = frame.changeCount++;
        change = round < 2 ? ButtonChange{button, round == 0}
                           : ButtonChange{static_cast<std::uint8_t>(button / 2U), button % 2U == 0};
      }
      watcher.process(frame, 0xFF);
    }
    watcher.resynchronize(0xFFFF, Microseconds{10}, 0);
    watcher.release(Microseconds{10});
    EXPECT_EQ(watcher.problem(), "") << command;
  }
}

}  // namespace
}  // namespace veltrix
