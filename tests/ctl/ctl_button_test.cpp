#include "settings/modifier_mask.h"
#include "tests/ctl/ctl_test.h"

namespace veltrix {
namespace {

using testing::actionOf;
using ::testing::AllOf;
using testing::arrayOf;
using testing::clickOf;
using testing::dictionaryOf;
using testing::documentOf;
using ::testing::EndsWith;
using testing::entryOf;
using ::testing::HasSubstr;
using testing::readPlist;
using ::testing::StartsWith;
using testing::writeFile;
using testing::writePlist;

using Words = std::vector<std::string>;

constexpr int kKeyC = 8;
constexpr int kKeyT = 17;
constexpr int kPageUpKey = 116;

// The command "button" on a four-button model with chords (entry 0) and one with two buttons (entry 1).
class CtlButton : public testing::CtlTest {
 protected:
  CtlButton() {
    auto four = entryOf(0xA1D0, 0x1020);
    four.set("buttons", dictionaryOf({{"00", clickOf(1, 0)},
                                      {"01", clickOf(2, 0)},
                                      {"03", dictionaryOf({{"cmd", 35}, {"label", "Old"}, {"str", "old"}})},
                                      {"12", dictionaryOf({{"cmd", 20}, {"cnt", 2}})}}));
    auto two = entryOf(0xA1D0, 0x1022);
    two.set("buttons", dictionaryOf({{"00", clickOf(1, 0)}, {"01", clickOf(1, 0)}}));
    auto document = documentOf({four, two});
    document.set("snippets", arrayOf({dictionaryOf({{"name", "Greeting"}, {"text", "Dear Ada,\nhello"}})}));
    writePlist(fSettings, document);
  }

  static Words withButton(const std::string& button, const Words& words) {
    Words all = {"button", "crest", button};
    all.insert(all.end(), words.begin(), words.end());
    return all;
  }

  plist::Dictionary actionOnDisk(const std::string& button, std::size_t entry = 0) {
    return entryIn(readPlist(fSettings), entry).dictionaryFor("buttons").dictionaryFor(button);
  }

  // Gives button 3 an action by words and compares all of it.
  void expectAction(const Words& words, const plist::Dictionary& action) {
    expectDone(withButton("3", words), "");
    const auto found = actionOnDisk("03");
    EXPECT_TRUE(plist::equal(found, action)) << plist::writeXml(found).value();
  }

  void expectKeystroke(const std::string& keys, int keyCode, int modifiers) {
    SCOPED_TRACE(keys);
    expectAction({"keystroke", keys}, dictionaryOf({{"cmd", 10}, {"key", keyCode}, {"mod", modifiers}}));
  }

  void expectRefusal(const Words& words, int exitCode, const std::string& reason) {
    expectUnchanged(words, exitCode, AllOf(StartsWith("veltrixctl: "), HasSubstr(reason)));
  }
};

TEST_F(CtlButton, SetsAClickWithItsModifiers) {
  expectAction({"click"}, clickOf(1, 0));
  expectAction({"click", "right", "--mod", "Control+Shift"}, clickOf(2, kControlModifier | kShiftModifier));
  expectAction({"click", "button12", "--mod", "super+ALT"}, clickOf(18, kCommandModifier | kOptionModifier));
  expectAction({"click", "drag", "--mod", "0x1200"}, clickOf(7, 0x1200));
}

TEST_F(CtlButton, SetsAKeystrokeByTheNamesOfItsKeys) {
  expectKeystroke("Ctrl+Alt+T", kKeyT, kControlModifier | kOptionModifier);
  expectKeystroke("c", kKeyC, 0);
  expectKeystroke("Shift+F5", 96, kShiftModifier);
  expectKeystroke("F15", 113, 0);
  expectKeystroke("f", 3, 0);
  expectKeystroke("Control+page up", kPageUpKey, kControlModifier);
  expectKeystroke("PgUp", kPageUpKey, 0);
  expectKeystroke("Command+Left", 123, kCommandModifier);
  expectKeystroke("Escape", 53, 0);
  expectKeystroke("Backspace", 51, 0);
  expectKeystroke("Forward Delete", 117, 0);
  expectKeystroke("Return", 36, 0);
  expectKeystroke("Num Enter", 76, 0);
  expectKeystroke("5", 23, 0);
  expectKeystroke("Num 5", 87, 0);
  expectKeystroke("Num++", 69, 0);
  expectKeystroke("Control+Num+Enter", 76, kControlModifier);
  expectKeystroke("Ctrl+-", 27, kControlModifier);
}

TEST_F(CtlButton, FindsAKeyWhereTheLayoutHasIt) {
  fLayout = "de";
  expectKeystroke("Ctrl+Z", 16, kControlModifier);
  expectKeystroke("Ctrl++", 30, kControlModifier);
  expectKeystroke("Ö", 41, 0);
}

TEST_F(CtlButton, SetsAKeystrokeByThePlaceOfItsKey) {
  expectAction({"keystroke", "--key", "0x11", "--mod", "Ctrl"},
               dictionaryOf({{"cmd", 10}, {"key", kKeyT}, {"mod", kControlModifier}}));
  expectAction({"keystroke", "--key", "255"}, dictionaryOf({{"cmd", 10}, {"key", 255}, {"mod", 0}}));
}

TEST_F(CtlButton, WhatItShowsOfAKeystrokeCanBeSaidAgain) {
  const Words byPlace = {"keystroke", "--key", "", "--mod", "Control+Command+Option+Shift"};
  for (const std::string key :
       {"8", "27", "36", "50", "53", "69", "71", "76", "87", "105", "110", "116", "123"}) {
    auto words = byPlace;
    words[2] = key;
    expectDone(withButton("3", words), "");
    const auto wanted = actionOnDisk("03");
    const std::string shown = ctl(withButton("3", {})).output;
    const std::string heading = "keys       ";
    const auto start = shown.find(heading) + heading.size();
    const std::string keys = shown.substr(start, shown.find(" (key") - start);
    SCOPED_TRACE(keys);
    expectDone(withButton("3", {"click"}), "");
    expectAction({"keystroke", keys}, wanted);
  }
}

TEST_F(CtlButton, RefusesKeysThatMeanNothingOrTwoThings) {
  const auto refuse = [this](const std::string& keys, const std::string& reason) {
    expectRefusal(withButton("3", {"keystroke", keys}), 2, reason);
  };
  refuse("Delete", "write Backspace or Forward Delete");
  refuse("Ctrl+Enter", "write Return or Num Enter");
  refuse("Hyper+T", "\"Hyper\" is no modifier key");
  refuse("Ctrl+Shift", "\"Shift\" is a modifier key");
  refuse("Ctrl+", "names no key");
  refuse("F99", "\"F99\" is no key");
  refuse("ß", "is no key of the current keyboard layout");
  expectRefusal(withButton("3", {"keystroke"}), 2, "names no key");
  expectRefusal(withButton("3", {"keystroke", "a", "--key", "0"}), 2, "excludes");
  expectRefusal(withButton("3", {"keystroke", "a", "--mod", "Shift"}), 2, "requires");
  expectRefusal(withButton("3", {"keystroke", "--key", "127"}), 2, "no virtual key code");
  expectRefusal(withButton("3", {"click", "--mod", "0x2000"}), 2, "no modifier mask");
}

TEST_F(CtlButton, SetsScrollingWithItsCount) {
  expectAction({"scroll", "up", "--count", "3"}, dictionaryOf({{"cmd", 20}, {"cnt", 3}}));
  expectAction({"scroll", "left"}, dictionaryOf({{"cmd", 22}, {"cnt", 1}}));
  expectRefusal(withButton("3", {"scroll", "sideways"}), 2, "none of up, down, left, right");
  expectRefusal(withButton("3", {"scroll", "up", "--count", "0"}), 2, "1 to 32767");
}

TEST_F(CtlButton, SetsWhatIsOpenedAndLaunched) {
  expectAction({"open", fHome + "/a/../letter.odt"}, dictionaryOf({{"cmd", 70}, {"str", "~/letter.odt"}}));
  expectAction({"open", "~/letter.odt"}, dictionaryOf({{"cmd", 70}, {"str", "~/letter.odt"}}));
  expectAction({"launch", "Editor.app", "--id", "org.example.Editor"},
               dictionaryOf({{"cmd", 71}, {"str", "Editor"}, {"bndl", "org.example.Editor"}}));
  expectAction({"launch", "Editor"}, dictionaryOf({{"cmd", 71}, {"str", "Editor"}, {"bndl", ""}}));
  expectAction({"url", "https://example.org/"}, dictionaryOf({{"cmd", 72}, {"str", "https://example.org/"}}));
  expectAction({"script", "click"}, dictionaryOf({{"cmd", 73}, {"str", "click"}}));
  expectRefusal(withButton("3", {"url", ""}), 2, "must not be empty");
}

TEST_F(CtlButton, AFileIsNamedFromTheWorkingFolder) {
  expectDone(withButton("3", {"open", "letter.odt"}), "");
  EXPECT_THAT(actionOnDisk("03").stringFor("str"), AllOf(StartsWith("/"), EndsWith("/letter.odt")));
}

TEST_F(CtlButton, SetsSnippetsAndCommandsWithoutParameters) {
  expectAction({"snippet", "1"}, actionOf(180));
  expectAction({"snippet", "10"}, actionOf(189));
  expectAction({"command", "140"}, actionOf(140));
  expectRefusal(withButton("3", {"snippet", "11"}), 2, "1 to 10");
  expectRefusal(withButton("3", {"command", "999"}), 1, "there is no command 999");
  expectRefusal(withButton("3", {"command", "72"}), 2, "say url");
}

TEST_F(CtlButton, ALabelIsKeptOnlyWhenItIsSaidAgain) {
  expectAction({"click", "right", "--label", "Second"},
               dictionaryOf({{"cmd", 2}, {"mod", 0}, {"label", "Second"}}));
  expectAction({"click", "right"}, clickOf(2, 0));
}

TEST_F(CtlButton, TheLastPlainClickStays) {
  expectRefusal(withButton("0", {"keystroke", "c"}), 1,
                "button 0 is the last of buttons 0 to 3 with the plain primary click");
  expectRefusal(withButton("0", {"click", "--mod", "Shift"}), 1, "the last of buttons 0 to 3");
  expectDone(withButton("2", {"click"}), "");
  expectDone(withButton("0", {"keystroke", "c"}), "");
  expectRefusal(withButton("2", {"command", "0"}), 1, "button 2 is the last");
}

TEST_F(CtlButton, TheWheelKeepsScrolling) {
  expectDone(withButton("12", {"scroll", "up", "--count", "5"}), "");
  EXPECT_EQ(actionOnDisk("12").int32For("cnt"), 5);
  expectRefusal(withButton("12", {"scroll", "down"}), 1, "the wheel always scrolls");
  expectRefusal(withButton("12", {"click"}), 1, "the wheel always scrolls");
}

TEST_F(CtlButton, ChordsAreButtonsAndOthersAreRefused) {
  expectDone(withButton("9", {"click", "middle"}), "");
  expectRefusal(withButton("5", {"click"}), 1, "has no button 5: it has 0, 1, 2, 3, 8, 9, and 12");
  expectRefusal({"button", "1022", "9", "click"}, 1, "has no button 9: it has 0, 1, 8, and 12");
  expectRefusal(withButton("16", {"click"}), 2, "N");
  expectRefusal(withButton("-1", {"click"}), 2, "N");
}

TEST_F(CtlButton, RefusesWhatItDoesNotKnow) {
  expectRefusal({"button", "9999", "0", "click"}, 1, "no entry for \"9999\"");
  expectRefusal(withButton("3", {"dance"}), 2, "means nothing here");
  expectRefusal(withButton("3", {"click", "twice"}), 2, "is none of left");
  expectRefusal(withButton("3", {"click", "right", "left"}), 2, "means nothing here");
  expectRefusal({"button", "crest"}, 2, "N is required");
}

TEST_F(CtlButton, LeavesAFileThatIsNotInOrder) {
  writeFile(fSettings, "{");
  expectRefusal(withButton("3", {"click"}), 2, fSettings);
}

TEST_F(CtlButton, ShowsAnActionInItsOwnWords) {
  expectDone(withButton("0", {}), "command    1 (Click)\n");
  expectDone(withButton("12", {}), "command    20 (Scroll Up)\ncount      2\n");
  expectDone(withButton("3", {}), "command    35 (Copy)\nlabel      Old\n");
  expectDone(withButton("3", {"keystroke", "Ctrl+Shift+C"}), "");
  expectDone(withButton("3", {}), "command    10 (Keystroke)\nkeys       Control+Shift+C (key 8)\n");
  expectDone(withButton("3", {"click", "--mod", "Control"}), "");
  expectDone(withButton("3", {}), "command    1 (Click)\nwith       Control\n");
}

TEST_F(CtlButton, ShowsTheNameAndTheTextOfASnippet) {
  expectDone(withButton("3", {"snippet", "1"}), "");
  expectDone(withButton("3", {}), "command    180 (Greeting)\ntext       Dear Ada,\n           hello\n");
}

TEST_F(CtlButton, ShowsAnActionAsJson) {
  expectDone(withButton("3", {"keystroke", "Ctrl+C"}), "");
  EXPECT_EQ(json(withButton("3", {"--json"})),
            nlohmann::json({{"command", 10},
                            {"name", "Keystroke"},
                            {"kind", "keystroke"},
                            {"action", {{"cmd", 10}, {"key", kKeyC}, {"mod", kControlModifier}}}}));
}

TEST_F(CtlButton, SaysWhenAButtonHasNoAction) {
  expect(withButton("2", {}), 1, "", HasSubstr("has no action for button 2"));
}

}  // namespace
}  // namespace veltrix
