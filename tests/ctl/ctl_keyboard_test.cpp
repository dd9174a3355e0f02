#include "tests/ctl/ctl_test.h"
#include "tests/support/environment.h"

namespace veltrix {
namespace {

using ::testing::HasSubstr;

// The commands over the keyboard: keyname and keytable.
class CtlKeyboard : public testing::CtlTest {
 protected:
  static nlohmann::json rowOf(const nlohmann::json& table, unsigned character) {
    for (const auto& row : table) {
      if (row["character"] == character) {
        return row;
      }
    }
    return nullptr;
  }
};

TEST_F(CtlKeyboard, KeynameNamesCombinations) {
  expectDone({"keyname", "0", "0x1100", "--layout", "us", "--upper"}, "Control+Command+A\n");
  expectDone({"keyname", "0x57", "0", "--layout", "us"}, "Num+5\n");
  expectDone({"keyname", "255", "512", "--layout", "us"}, "Shift\n");
  expectDone({"keyname", "255", "0", "--layout", "us"}, "(none)\n");
  expectDone({"keyname", "16", "0", "--layout", "de"}, "z\n");
  expectDone({"keyname", "12", "0", "--layout", "dvorak"}, "'\n");
}

TEST_F(CtlKeyboard, KeynameTakesSeparators) {
  expectDone({"keyname", "0", "0x1300", "--layout", "us", "--mod-sep", "-", "--key-sep", " "},
             "Control-Command-Shift a\n");
  expectDone({"keyname", "0", "0x1200", "--layout", "us", "--mod-sep", "", "--key-sep", ""},
             "ControlShifta\n");
}

TEST_F(CtlKeyboard, KeynameShowsTheWordsOfTheWindow) {
  const testing::ScopedEnvironment locale("LC_ALL", "C.UTF-8");
  const std::vector<std::string> arguments = {"keyname",     "123",       "0x1100", "--layout",  "us",
                                              "--localized", "--mod-sep", "",       "--key-sep", ""};
  {
    const testing::ScopedEnvironment language("LANGUAGE", "en");
    expectDone(arguments, "Ctrl\u00a0Super\u00a0Left\n");
  }
  const testing::ScopedEnvironment language("LANGUAGE", "de");
  expectDone(arguments, "Strg\u00a0Super\u00a0Links\n");
  expectDone({"keyname", "255", "0", "--layout", "us", "--localized"}, "(keine)\n");
  expectDone({"keyname", "117", "0x200", "--layout", "us", "--localized"}, "Umschalt+Entf\n");
}

TEST_F(CtlKeyboard, KeynameIsJsonWhenWanted) {
  EXPECT_EQ(json({"keyname", "53", "0", "--layout", "us", "--json"}),
            nlohmann::json({{"code", 53}, {"mask", 0}, {"name", "esc"}}));
}

TEST_F(CtlKeyboard, KeynameRefusesWhatIsNoNumber) {
  for (const char* code : {"256", "-1", "x", "0x", "", "1a", " 1", "99999999999"}) {
    expect({"keyname", code, "0", "--layout", "us"}, 2, "", HasSubstr("veltrixctl: "));
  }
  expect({"keyname", "1", "65536", "--layout", "us"}, 2, "", HasSubstr("MASK is a number"));
  expect({"keyname", "300", "0", "--layout", "us"}, 2, "", HasSubstr("CODE is a number"));
  expect({"keyname", "1"}, 2, "", HasSubstr("required"));
}

TEST_F(CtlKeyboard, ALayoutThatDoesNotExistIsNamed) {
  expect({"keyname", "0", "0", "--layout", "nosuch"}, 2, "",
         "veltrixctl: there is no keyboard layout \"nosuch\"\n");
  expect({"keytable", "--layout", "us:nosuch"}, 2, "",
         "veltrixctl: there is no keyboard layout \"us:nosuch\"\n");
  expect({"keytable", "--layout", "../us"}, 2, "", "veltrixctl: there is no keyboard layout \"../us\"\n");
}

TEST_F(CtlKeyboard, WithoutALayoutTheDesktopsIsTaken) {
  fLayout = "fr";
  expectDone({"keyname", "12", "0"}, "a\n");
}

TEST_F(CtlKeyboard, KeytableListsTheKeyOfEveryCharacter) {
  const auto table = json({"keytable", "--layout", "de", "--json"});
  EXPECT_EQ(rowOf(table, 'Z'),
            nlohmann::json(
                {{"character", 'Z'}, {"text", "Z"}, {"key", 16}, {"modifiers", 0x200}, {"name", "Shift+z"}}));
  EXPECT_EQ(rowOf(table, 0xDB)["name"], "Option+e");
  EXPECT_EQ(rowOf(table, '5')["key"], 23);
  EXPECT_EQ(rowOf(table, 0xFF), nullptr);
  EXPECT_EQ(rowOf(json({"keytable", "--layout", "de", "--numpad", "--json"}), '5')["key"], 87);
}

TEST_F(CtlKeyboard, KeytablePrintsALineForEach) {
  const auto run = ctl({"keytable", "--layout", "us"});
  EXPECT_EQ(run.exitCode, 0) << run.errors;
  EXPECT_THAT(run.output, HasSubstr("\n0x41 A   0 0x0200 Shift+a\n"));
  EXPECT_THAT(run.output, HasSubstr("\n0x1B    53 0x0000 esc\n"));
}

TEST_F(CtlKeyboard, KeytableForTypingTakesEachKeyAlone) {
  EXPECT_EQ(rowOf(json({"keytable", "--layout", "fr", "--typing", "--json"}), 'i')["key"], 34);
  EXPECT_NE(rowOf(json({"keytable", "--layout", "fr", "--json"}), 'i')["key"], 34);
}

}  // namespace
}  // namespace veltrix
