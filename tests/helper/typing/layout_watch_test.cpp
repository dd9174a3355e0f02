#include "helper/typing/layout_watch.h"

#include <linux/input-event-codes.h>

#include <memory>

#include "driverlink/packets.h"
#include "tests/helper/typing/fake_compositor.h"
#include "tests/helper/typing/layout_watch_fixture.h"
#include "tests/support/child_process.h"
#include "tests/support/environment.h"
#include "tests/support/x_server.h"

namespace veltrix {
namespace {

using testing::FakeCompositor;
using testing::LayoutWatchTest;

std::string keymapText(const char* layout) {
  const auto context = xkb::makeContext();
  const auto found = xkb::keymapOfNames(context.get(), {"", layout, "", ""});
  const std::unique_ptr<char, decltype(&std::free)> text(
      xkb_keymap_get_as_string(found.keymap.get(), XKB_KEYMAP_FORMAT_TEXT_V1), &std::free);
  return text.get();
}

TEST_F(LayoutWatchTest, WithoutADisplayTheSystemsNamesCount) {
  LayoutWatch watch(fLoop.get(), sources("", ""));
  EXPECT_TRUE(untilTyped(watch, U'π', KEY_P));
}

TEST_F(LayoutWatchTest, DisplaysThatAreNotThereLeaveTheSystemsNames) {
  LayoutWatch watch(fLoop.get(), sources(":4711", fFolder / "nobody"));
  EXPECT_TRUE(untilTyped(watch, U'π', KEY_P));
}

TEST_F(LayoutWatchTest, LampsCountFromTheNextLookOn) {
  LayoutWatch watch(fLoop.get(), sources("", ""));
  watch.setLamps(kCapsLockLamp);
  ASSERT_NE(watch.current(), nullptr);
  EXPECT_EQ(watch.current()->keysForCharacter(U'Π').front().modifiers[0], 0);
  watch.setLamps(0);
  EXPECT_EQ(watch.current()->keysForCharacter(U'Π').front().modifiers[0], KEY_LEFTSHIFT);
}

TEST_F(LayoutWatchTest, ModelStaysAsLongAsTheLayout) {
  LayoutWatch watch(fLoop.get(), sources("", ""));
  const auto* model = watch.current();
  ASSERT_NE(model, nullptr);
  EXPECT_EQ(watch.current(), model);
}

class LayoutWatchOnWayland : public LayoutWatchTest {
 protected:
  void listen(std::string keymap) {
    fCompositor = std::make_unique<FakeCompositor>(fSocket, std::move(keymap));
  }

  bool untilTypedThere(char32_t character, std::uint16_t code) {
    return untilTyped(*fWatch, character, code, [this] {
      if (fCompositor) {
        fCompositor->dispatch();
      }
    });
  }

  void watch() { fWatch = std::make_unique<LayoutWatch>(fLoop.get(), sources("", fSocket)); }

  std::string fSocket = fFolder / "wayland-test";
  std::unique_ptr<FakeCompositor> fCompositor;
  std::unique_ptr<LayoutWatch> fWatch;
};

TEST_F(LayoutWatchOnWayland, KeymapOfTheSeatCountsFromItsArrivalOn) {
  listen(keymapText("fr"));
  watch();
  EXPECT_TRUE(untilTyped(*fWatch, U'π', KEY_P));  // the compositor is silent so far, and nobody waits for it
  EXPECT_TRUE(untilTypedThere(U'a', KEY_Q));
}

TEST_F(LayoutWatchOnWayland, ChangeOfTheKeymapCounts) {
  listen(keymapText("fr"));
  watch();
  ASSERT_TRUE(untilTypedThere(U'a', KEY_Q));
  fCompositor->setKeymap(keymapText("de"));
  EXPECT_TRUE(untilTypedThere(U'z', KEY_Y));
  fCompositor->setKeymap(keymapText("ru"));
  EXPECT_TRUE(untilTypedThere(U'й', KEY_Q));
}

TEST_F(LayoutWatchOnWayland, KeymapThatIsNoneLeavesTheLastOne) {
  listen(keymapText("fr"));
  watch();
  ASSERT_TRUE(untilTypedThere(U'a', KEY_Q));
  fCompositor->setKeymap("xkb_keymap {");
  fCompositor->setKeymap(std::string(100000, '\xFF'));
  for (int turn = 0; turn < 20; ++turn) {
    fCompositor->dispatch();
    sd_event_run(fLoop.get(), 1000);
    EXPECT_EQ(fWatch->current()->keysForCharacter(U'a').front().code, KEY_Q);
  }
}

TEST_F(LayoutWatchOnWayland, KeyboardThatIsPluggedInAgainIsAskedAgain) {
  listen(keymapText("fr"));
  watch();
  ASSERT_TRUE(untilTypedThere(U'a', KEY_Q));
  fCompositor->setHasKeyboard(false);
  ASSERT_TRUE(untilTypedThere(U'a', KEY_Q));
  fCompositor->setKeymap(keymapText("de"));
  fCompositor->setHasKeyboard(true);
  EXPECT_TRUE(untilTypedThere(U'z', KEY_Y));
}

TEST_F(LayoutWatchOnWayland, SeatWithoutAKeyboardLeavesTheSystemsNames) {
  listen("");
  watch();
  for (int turn = 0; turn < 20; ++turn) {
    fCompositor->dispatch();
    sd_event_run(fLoop.get(), 1000);
  }
  EXPECT_TRUE(untilTypedThere(U'π', KEY_P));
}

TEST_F(LayoutWatchOnWayland, CompositorThatGoesIsFoundAgain) {
  listen(keymapText("fr"));
  watch();
  ASSERT_TRUE(untilTypedThere(U'a', KEY_Q));
  fCompositor.reset();
  std::filesystem::remove(fSocket);
  EXPECT_TRUE(untilTypedThere(U'π', KEY_P));
  listen(keymapText("de"));
  EXPECT_TRUE(untilTypedThere(U'z', KEY_Y));
}

// A source that is told the group by hand.
class ToldGroup : public GroupSource {
 public:
  explicit ToldGroup(const std::optional<std::uint32_t>* told) : fTold(told) {}
  std::optional<std::uint32_t> group() override { return *fTold; }

 private:
  const std::optional<std::uint32_t>* fTold;
};

class LayoutWatchWithGroups : public LayoutWatchOnWayland {
 protected:
  void watchWithGroups() {
    fWatch =
        std::make_unique<LayoutWatch>(fLoop.get(), sources("", fSocket), std::make_unique<ToldGroup>(&fTold));
  }

  std::optional<std::uint32_t> fTold;
};

TEST_F(LayoutWatchWithGroups, GroupThatIsToldCountsAtOnce) {
  listen(keymapText("us,ru"));
  watchWithGroups();
  ASSERT_TRUE(untilTypedThere(U'a', KEY_A));  // nobody has told yet
  fTold = 1;
  EXPECT_EQ(fWatch->current()->keysForCharacter(U'ф').front().code, KEY_A);
  EXPECT_TRUE(fWatch->current()->keysForCharacter(U'a').empty());
  fTold = 0;
  EXPECT_EQ(fWatch->current()->keysForCharacter(U'a').front().code, KEY_A);
  fTold = 1;
  EXPECT_EQ(fWatch->current()->keysForCharacter(U'ф').front().code, KEY_A);
  fTold.reset();
  EXPECT_EQ(fWatch->current()->keysForCharacter(U'a').front().code, KEY_A);
}

TEST_F(LayoutWatchWithGroups, GroupThatTheKeymapDoesNotHaveCountsOnceItHas) {
  listen(keymapText("us"));
  fTold = 1;
  watchWithGroups();
  ASSERT_TRUE(untilTypedThere(U'a', KEY_A));
  fTold = 0xFFFFFFFF;
  EXPECT_EQ(fWatch->current()->keysForCharacter(U'a').front().code, KEY_A);
  fTold = 1;
  fCompositor->setKeymap(keymapText("us,ru"));
  EXPECT_TRUE(untilTypedThere(U'ф', KEY_A));
}

TEST_F(LayoutWatchWithGroups, ModelStaysAsLongAsTheGroup) {
  listen(keymapText("us,ru"));
  fTold = 1;
  watchWithGroups();
  ASSERT_TRUE(untilTypedThere(U'ф', KEY_A));
  const auto* model = fWatch->current();
  EXPECT_EQ(fWatch->current(), model);
}

TEST_F(LayoutWatchWithGroups, WithoutACompositorTheGroupIsOfNoUse) {
  fTold = 1;
  watchWithGroups();
  EXPECT_TRUE(untilTyped(*fWatch, U'π', KEY_P));
}

// A desktop that a real compositor runs: one whose keyboard is that of an X server.
TEST_F(LayoutWatchOnWayland, RealCompositorTellsItsKeymap) {
  const testing::XServer server;
  server.setLayout({"fr"});
  const testing::ChildProcess compositor(
      {"weston", "--backend=x11-backend.so", "--use-pixman", "--no-config", "--socket=wayland-test",
       "--width=320", "--height=240", "--idle-time=0"},
      {{"DISPLAY", server.display()},
       {"XDG_RUNTIME_DIR", fFolder.path()},
       {"WAYLAND_DISPLAY", std::nullopt}});
  watch();
  EXPECT_TRUE(untilTypedThere(U'a', KEY_Q)) << compositor.output();
}

}  // namespace
}  // namespace veltrix
