#include <linux/input-event-codes.h>
#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>

// The header names fields by a word that C++ keeps for itself.
#define explicit explicitComponents
#include <xcb/xkb.h>
#undef explicit

#include "helper/typing/layout_watch.h"
#include "tests/helper/typing/layout_watch_fixture.h"
#include "tests/support/child_process.h"
#include "tests/support/wait_until.h"
#include "tests/support/x_server.h"

namespace veltrix {
namespace {

using Connection = std::unique_ptr<xcb_connection_t, void (*)(xcb_connection_t*)>;

Connection connectTo(const std::string& display) {
  Connection connection(xcb_connect(display.c_str(), nullptr), xcb_disconnect);
  EXPECT_EQ(xcb_connection_has_error(connection.get()), 0);
  return connection;
}

void check(xcb_connection_t* connection, xcb_void_cookie_t request) {
  xcb_generic_error_t* error = xcb_request_check(connection, request);
  EXPECT_EQ(error, nullptr);
  std::free(error);
}

// Switches the group as a person does with the panel.
void lockGroup(const std::string& display, std::uint8_t group) {
  const auto connection = connectTo(display);
  std::free(
      xcb_xkb_use_extension_reply(connection.get(), xcb_xkb_use_extension(connection.get(), 1, 0), nullptr));
  check(connection.get(),
        xcb_xkb_latch_lock_state_checked(connection.get(), XCB_XKB_ID_USE_CORE_KBD, 0, 0, 1, group, 0, 0, 0));
}

class LayoutWatchOnX11 : public testing::LayoutWatchTest {
 protected:
  testing::XServer fServer;
};

TEST_F(LayoutWatchOnX11, LayoutOfTheServerCountsAtOnce) {
  fServer.setLayout({"fr"});
  LayoutWatch watch(fLoop.get(), sources(fServer.display(), ""));
  const auto* keyboard = watch.current();
  ASSERT_NE(keyboard, nullptr);
  EXPECT_EQ(keyboard->keysForCharacter(U'a').front().code, KEY_Q);
}

TEST_F(LayoutWatchOnX11, ChangeOfTheLayoutCounts) {
  fServer.setLayout({"fr"});
  LayoutWatch watch(fLoop.get(), sources(fServer.display(), ""));
  ASSERT_TRUE(untilTyped(watch, U'a', KEY_Q));
  fServer.setLayout({"de"});
  EXPECT_TRUE(untilTyped(watch, U'z', KEY_Y));
  fServer.setLayout({"us", "-variant", "dvorak"});
  EXPECT_TRUE(untilTyped(watch, U'c', KEY_I));
}

TEST_F(LayoutWatchOnX11, ChangeOfTheGroupCounts) {
  fServer.setLayout({"us,ru"});
  LayoutWatch watch(fLoop.get(), sources(fServer.display(), ""));
  ASSERT_TRUE(untilTyped(watch, U'q', KEY_Q));
  lockGroup(fServer.display(), 1);
  EXPECT_TRUE(untilTyped(watch, U'й', KEY_Q));
  lockGroup(fServer.display(), 0);
  EXPECT_TRUE(untilTyped(watch, U'q', KEY_Q));
}

TEST_F(LayoutWatchOnX11, ChangeThatTheServerHasToldCountsBeforeTheLoopRuns) {
  fServer.setLayout({"us,ru"});
  LayoutWatch watch(fLoop.get(), sources(fServer.display(), ""));
  ASSERT_TRUE(untilTyped(watch, U'q', KEY_Q));
  lockGroup(fServer.display(), 1);
  EXPECT_TRUE(testing::waitUntil([&] { return !watch.current()->keysForCharacter(U'й').empty(); }));
}

// Of a single key, by the oldest way to do it.
TEST_F(LayoutWatchOnX11, ChangeOfOneKeyCountsOnceTheServerIsFree) {
  fServer.setLayout({"us"});
  LayoutWatch watch(fLoop.get(), sources(fServer.display(), ""));
  ASSERT_TRUE(untilTyped(watch, U'q', KEY_Q));
  const auto keeper = connectTo(fServer.display());
  check(keeper.get(), xcb_grab_server_checked(keeper.get()));
  const xcb_keysym_t keysyms[] = {XKB_KEY_oslash, XKB_KEY_Oslash};
  check(keeper.get(),
        xcb_change_keyboard_mapping_checked(keeper.get(), 1, xkb::keycodeOf(KEY_Q), 2, keysyms));
  for (int turn = 0; turn < 20; ++turn) {  // to wait for the server here would be for ever
    sd_event_run(fLoop.get(), 1000);
    EXPECT_FALSE(watch.current()->keysForCharacter(U'q').empty());
  }
  check(keeper.get(), xcb_ungrab_server_checked(keeper.get()));
  EXPECT_TRUE(untilTyped(watch, U'ø', KEY_Q));
}

class LayoutWatchOnServerThatGoes : public testing::LayoutWatchTest {};

TEST_F(LayoutWatchOnServerThatGoes, IsFoundAgain) {
  auto server = std::make_unique<testing::XServer>();
  server->setLayout({"fr"});
  const std::string display = server->display();
  LayoutWatch watch(fLoop.get(), sources(display, ""));
  ASSERT_TRUE(untilTyped(watch, U'a', KEY_Q));
  server.reset();
  EXPECT_TRUE(untilTyped(watch, U'π', KEY_P));
  const testing::ChildProcess next({"Xvfb", display, "-noreset", "-nolisten", "tcp"});
  EXPECT_TRUE(untilTyped(watch, U'q', KEY_Q)) << next.output();
}

}  // namespace
}  // namespace veltrix
