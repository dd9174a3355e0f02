#include "helper/desktop/printed_shortcut.h"

#include <gmock/gmock.h>
#include <rapidcheck/gtest.h>
#include <xkbcommon/xkbcommon-keysyms.h>

namespace veltrix {
namespace {

TEST(PrintedShortcut, IsTheFirstOfItsKeys) {
  EXPECT_EQ(shortcutIn("['<Primary><Super>d', 'F3']\n"), (KeyStroke{kHoldControl | kHoldSuper, XKB_KEY_d}));
  EXPECT_EQ(shortcutIn("['F3']"), (KeyStroke{0, XKB_KEY_F3}));
}

TEST(PrintedShortcut, ModifiersHaveSeveralNames) {
  EXPECT_EQ(shortcutIn("['<Shift><Control><Alt>Page_Up']"),
            (KeyStroke{kHoldShift | kHoldControl | kHoldAlt, XKB_KEY_Page_Up}));
  EXPECT_EQ(shortcutIn("['<Ctrl><Mod1>Page_Up']"), (KeyStroke{kHoldControl | kHoldAlt, XKB_KEY_Page_Up}));
}

TEST(PrintedShortcut, LettersAreInTheirSmallForm) {
  EXPECT_EQ(shortcutIn("['<Super>D']"), (KeyStroke{kHoldSuper, XKB_KEY_d}));
}

TEST(PrintedShortcut, KeysThatAKeyboardDoesNotHaveArePassedOver) {
  EXPECT_EQ(shortcutIn("['', 'disabled', '<Super>Above_Tab', '<Hyper>x', '<Super', '<Super>x']"),
            (KeyStroke{kHoldSuper, XKB_KEY_x}));
}

TEST(PrintedShortcut, WithoutKeysThereIsNone) {
  for (const char* text : {"@as []\n", "[]", "['']", "['<Super>']", "['<Super>d", "'<Super>d'", "", "true"}) {
    EXPECT_EQ(shortcutIn(text), std::nullopt) << text;
  }
}

RC_GTEST_PROP(PrintedShortcut, NoTextDoesHarm, (const std::string& text)) {
  shortcutIn(text);
  shortcutIn("['" + text + "']");
}

}  // namespace
}  // namespace veltrix
