#include "driver/engine/action_keys.h"

#include <gmock/gmock.h>

#include "tests/driver/played_events.h"

namespace veltrix {
namespace {

using test::down;
using test::together;
using test::up;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr std::uint16_t kCommand = 0x0100;
constexpr std::uint16_t kShift = 0x0200;
constexpr std::uint16_t kCapsLock = 0x0400;
constexpr std::uint16_t kOption = 0x0800;
constexpr std::uint16_t kControl = 0x1000;

class ActionKeysTest : public ::testing::Test {
 protected:
  std::vector<std::string> taken() {
    auto groups = test::groupsOf(fOutput);
    fOutput.clear();
    return groups;
  }

  ActionKeys fKeys;
  Output fOutput;
};

TEST_F(ActionKeysTest, ModifiersGoDownInOneGroupAndUpInTheOppositeOrder) {
  fKeys.pressModifiers(kCommand | kShift | kOption | kControl, fOutput);
  EXPECT_THAT(taken(), ElementsAre(together(down(KEY_LEFTMETA), down(KEY_LEFTSHIFT), down(KEY_LEFTALT),
                                            down(KEY_LEFTCTRL))));
  fKeys.releaseModifiers(kCommand | kShift | kOption | kControl, fOutput);
  EXPECT_THAT(taken(),
              ElementsAre(together(up(KEY_LEFTCTRL), up(KEY_LEFTALT), up(KEY_LEFTSHIFT), up(KEY_LEFTMETA))));
}

TEST_F(ActionKeysTest, BitsThatAreNoModifierDoNothing) {
  fKeys.pressModifiers(0xE0FF, fOutput);
  fKeys.releaseModifiers(0xE0FF, fOutput);
  EXPECT_THAT(taken(), IsEmpty());
}

TEST_F(ActionKeysTest, EachKeyIsAGroupOfItsOwn) {
  fKeys.press(BTN_LEFT, fOutput);
  fKeys.press(KEY_A, fOutput);
  fKeys.release(BTN_LEFT, fOutput);
  EXPECT_THAT(taken(), ElementsAre(down(BTN_LEFT), down(KEY_A), up(BTN_LEFT)));
}

TEST_F(ActionKeysTest, KeyOfTwoHoldersGoesDownAndUpOnce) {
  fKeys.pressModifiers(kShift, fOutput);
  fKeys.pressModifiers(kShift | kControl, fOutput);
  fKeys.releaseModifiers(kShift, fOutput);
  EXPECT_THAT(taken(), ElementsAre(down(KEY_LEFTSHIFT), down(KEY_LEFTCTRL)));
  fKeys.releaseModifiers(kShift | kControl, fOutput);
  EXPECT_THAT(taken(), ElementsAre(together(up(KEY_LEFTCTRL), up(KEY_LEFTSHIFT))));
}

TEST_F(ActionKeysTest, CapsLockIsTappedOnceMoreSoThatTheLockIsAsBefore) {
  fKeys.pressModifiers(kCapsLock | kShift, fOutput);
  EXPECT_THAT(taken(), ElementsAre(together(down(KEY_LEFTSHIFT), down(KEY_CAPSLOCK))));
  fKeys.releaseModifiers(kCapsLock | kShift, fOutput);
  EXPECT_THAT(taken(), ElementsAre(together(up(KEY_CAPSLOCK), up(KEY_LEFTSHIFT)), down(KEY_CAPSLOCK),
                                   up(KEY_CAPSLOCK)));
}

TEST_F(ActionKeysTest, CapsLockOfTwoHoldersIsTappedAfterTheLast) {
  fKeys.pressModifiers(kCapsLock, fOutput);
  fKeys.pressModifiers(kCapsLock, fOutput);
  fKeys.releaseModifiers(kCapsLock, fOutput);
  EXPECT_THAT(taken(), ElementsAre(down(KEY_CAPSLOCK)));
  fKeys.releaseModifiers(kCapsLock, fOutput);
  EXPECT_THAT(taken(), ElementsAre(up(KEY_CAPSLOCK), down(KEY_CAPSLOCK), up(KEY_CAPSLOCK)));
}

TEST_F(ActionKeysTest, CapsLockAsAKeyTurnsTheLock) {
  fKeys.press(KEY_CAPSLOCK, fOutput);
  fKeys.release(KEY_CAPSLOCK, fOutput);
  EXPECT_THAT(taken(), ElementsAre(down(KEY_CAPSLOCK), up(KEY_CAPSLOCK)));
}

TEST_F(ActionKeysTest, ReleasingAllGoesFromTheLastToTheFirst) {
  fKeys.pressModifiers(kControl | kCapsLock, fOutput);
  fKeys.press(BTN_LEFT, fOutput);
  fKeys.press(BTN_LEFT, fOutput);
  taken();
  fKeys.releaseAll(fOutput);
  EXPECT_THAT(taken(), ElementsAre(up(BTN_LEFT), up(KEY_LEFTCTRL), up(KEY_CAPSLOCK), down(KEY_CAPSLOCK),
                                   up(KEY_CAPSLOCK)));
  fKeys.releaseAll(fOutput);
  EXPECT_THAT(taken(), IsEmpty());
}

}  // namespace
}  // namespace veltrix
