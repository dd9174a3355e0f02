#include <gtest/gtest.h>
#include <linux/input-event-codes.h>
#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>

// The header names fields by a word that C++ keeps for itself.
#define explicit explicitComponents
#include <xcb/xkb.h>
#undef explicit

#include "platform/keyboard_layout.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/x_server.h"

namespace veltrix {
namespace {

// The layout of a desktop that an X server runs.
class X11Keymap : public ::testing::Test {
 protected:
  char16_t typed(std::uint16_t key, std::uint8_t modifiers = 0) {
    const auto layout =
        KeyboardLayout::current({fServer.display(), "", LayoutNames{"", "gr", "", ""}, fFolder / "keyboard"});
    std::uint32_t state = 0;
    return layout ? layout.value().translate(key, modifiers, state).value_or(0xFFFF) : u'\0';
  }

  // Changes what the server's keyboard has locked: a group, as a person does with the switch in the panel,
  // and modifiers.
  void lock(std::uint8_t group, std::uint8_t modifiers = 0) {
    const std::unique_ptr<xcb_connection_t, void (*)(xcb_connection_t*)> connection(
        xcb_connect(fServer.display().c_str(), nullptr), xcb_disconnect);
    std::free(xcb_xkb_use_extension_reply(connection.get(), xcb_xkb_use_extension(connection.get(), 1, 0),
                                          nullptr));
    const auto request = xcb_xkb_latch_lock_state_checked(connection.get(), XCB_XKB_ID_USE_CORE_KBD, 0xFF,
                                                          modifiers, 1, group, 0, 0, 0);
    xcb_generic_error_t* error = xcb_request_check(connection.get(), request);
    EXPECT_EQ(error, nullptr);
    std::free(error);
  }

  testing::TemporaryFolder fFolder;
  testing::XServer fServer;
};

TEST_F(X11Keymap, TheServersLayoutComesBeforeAllOthers) {
  testing::writeFile(fFolder / "keyboard", "XKBLAYOUT=\"jp\"\n");
  fServer.setLayout({"de"});
  EXPECT_EQ(typed(KEY_Y), u'z');
  EXPECT_EQ(typed(KEY_E, 0x08), u'€');
  fServer.setLayout({"fr"});
  EXPECT_EQ(typed(KEY_Q), u'a');
}

TEST_F(X11Keymap, VariantsCount) {
  fServer.setLayout({"us", "-variant", "dvorak"});
  EXPECT_EQ(typed(KEY_Q), u'\'');
}

TEST_F(X11Keymap, OfSeveralLayoutsTheOneInEffectCounts) {
  fServer.setLayout({"us,ru"});
  EXPECT_EQ(typed(KEY_Q), u'q');
  lock(1);
  EXPECT_EQ(typed(KEY_Q), u'й');
  EXPECT_EQ(typed(KEY_Q, 0x01), u'q');
  lock(0);
  EXPECT_EQ(typed(KEY_Q), u'q');
}

TEST_F(X11Keymap, LockedKeysChangeNothing) {
  fServer.setLayout({"us"});
  lock(0, XCB_MOD_MASK_LOCK);
  EXPECT_EQ(typed(KEY_Q), u'q');
  EXPECT_EQ(typed(KEY_KP7), u'7');
}

}  // namespace
}  // namespace veltrix
