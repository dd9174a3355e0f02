#include "editor/action_values.h"

#include <gtest/gtest.h>

#include <limits>

#include "tests/support/environment.h"

namespace veltrix {
namespace {

using plist::Dictionary;
using testing::ScopedEnvironment;

Dictionary makeAction(std::initializer_list<plist::Entry> entries) {
  Dictionary action = Dictionary::create();
  for (const plist::Entry& entry : entries) {
    action.set(entry.key, entry.value);
  }
  return action;
}

Dictionary makeFullAction(int command) {
  return makeAction({{"cmd", command},
                     {"label", "Mine"},
                     {"mod", 0x1100},
                     {"btn", 1},
                     {"clk", 2},
                     {"key", 12},
                     {"char", 65},
                     {"freq", 3},
                     {"cnt", 7},
                     {"str", "text"},
                     {"bndl", "org.example.viewer"}});
}

bool isExactly(const Dictionary& action, std::initializer_list<plist::Entry> entries) {
  return plist::equal(action, makeAction(entries));
}

// Resetting, one command of each kind.

TEST(ResetAction, LeavesThePlainCommandItsLabelAndTheApplicationIdentifier) {
  const Dictionary action = makeFullAction(10);
  takeAction(action, 42, {}, true);
  EXPECT_TRUE(isExactly(action, {{"cmd", 42}, {"label", "Mine"}, {"bndl", "org.example.viewer"}}));
}

TEST(ResetAction, HappensAlsoWhenTheCommandStaysTheSame) {
  const Dictionary action = makeFullAction(10);
  takeAction(action, 10, {.keystrokeKeys = {.shift = true}}, true);
  EXPECT_EQ(action.int32For("key"), 255);
  EXPECT_EQ(action.int32For("mod"), 0);
  EXPECT_FALSE(action.contains("str"));
}

TEST(ResetAction, AClickStartsWithoutModifiersAndLosesTheKey) {
  const Dictionary action = makeFullAction(10);
  takeAction(action, 2, {.clickKeys = {.command = true}}, true);
  EXPECT_TRUE(action.contains("mod"));
  EXPECT_EQ(action.int32For("mod"), 0);
  EXPECT_FALSE(action.contains("key"));
}

TEST(ResetAction, AScrollStartsAtOne) {
  const Dictionary action = makeFullAction(1);
  takeAction(action, 23, {.scrollCount = 9}, true);
  EXPECT_EQ(action.int32For("cnt"), 1);
}

TEST(ResetAction, TextsStartEmptyButAreThere) {
  for (const int command : {70, 71, 72, 73}) {
    const Dictionary action = makeFullAction(10);
    takeAction(action, command, {}, true);
    EXPECT_EQ(action.get("str").type(), plist::Type::kString) << command;
    EXPECT_EQ(action.stringFor("str"), "") << command;
  }
}

TEST(ResetAction, AnApplicationKeepsAnIdentifierThatWasThere) {
  const Dictionary action = makeFullAction(70);
  takeAction(action, 71, {}, true);
  EXPECT_EQ(action.stringFor("bndl"), "org.example.viewer");
}

TEST(ResetAction, AnApplicationWithoutIdentifierGetsAnEmptyOne) {
  const Dictionary action = makeAction({{"cmd", 1}});
  takeAction(action, 71, {}, true);
  EXPECT_TRUE(isExactly(action, {{"cmd", 71}, {"str", ""}, {"bndl", ""}}));
}

TEST(ResetAction, ASnippetHasNoParameters) {
  const Dictionary action = makeAction({{"cmd", 1}, {"mod", 0x100}});
  takeAction(action, 183, {}, true);
  EXPECT_TRUE(isExactly(action, {{"cmd", 183}}));
}

// Taking what the controls say.

TEST(TakeAction, AClickTakesItsFourKeys) {
  const Dictionary action = makeAction({{"cmd", 1}});
  takeAction(action, 1, {.clickKeys = {.command = true, .shift = true, .option = true, .control = true}},
             false);
  EXPECT_EQ(action.uint32For("mod"), 0x1B00U);
}

TEST(TakeAction, AClickDropsCapsLockFromItsMask) {
  const Dictionary action = makeAction({{"cmd", 1}, {"mod", 0x0500}});
  takeAction(action, 1, {.clickKeys = modifierKeysOf(action)}, false);
  EXPECT_EQ(action.uint32For("mod"), 0x0100U);
}

TEST(TakeAction, RemovesNothingWithoutReset) {
  const Dictionary action = makeFullAction(1);
  takeAction(action, 1, {}, false);
  EXPECT_EQ(action.count(), makeFullAction(1).count());
  EXPECT_EQ(action.int32For("key"), 12);
}

TEST(TakeAction, AKeystrokeKeepsTheKeyAndTakesTheModifiers) {
  const Dictionary action = makeAction({{"cmd", 10}, {"key", 0x10C}, {"mod", 0}});
  takeAction(action, 10, {.clickKeys = {.command = true}, .keystrokeKeys = {.control = true}}, false);
  EXPECT_EQ(action.int32For("key"), 0x0C);
  EXPECT_EQ(action.uint32For("mod"), 0x1000U);
}

TEST(TakeAction, ANegativeSpeedIsStoredByItsMagnitude) {
  const Dictionary action = makeAction({{"cmd", 20}, {"cnt", 1}});
  takeAction(action, 20, {.scrollCount = -5}, false);
  EXPECT_EQ(action.int32For("cnt"), 5);
}

TEST(TakeAction, ATextOfAnotherTypeCountsAsMissing) {
  const Dictionary action = makeAction({{"cmd", 72}, {"str", 12}});
  takeAction(action, 72, {}, false);
  EXPECT_EQ(action.get("str").type(), plist::Type::kString);
  EXPECT_EQ(action.stringFor("str"), "");
}

TEST(TakeAction, ANullActionSwallowsEverything) {
  takeAction({}, 10, {}, true);
  storeLabel({}, "Mine");
  EXPECT_FALSE(storeKeystroke({}, 1, 0));
  EXPECT_FALSE(storeItem({}, "/etc"));
}

TEST(StoreLabel, AnEmptyOneRemovesTheKey) {
  const Dictionary action = makeAction({{"cmd", 1}});
  storeLabel(action, "Mine");
  EXPECT_EQ(action.stringFor("label"), "Mine");
  storeLabel(action, "");
  EXPECT_FALSE(action.contains("label"));
}

TEST(StoreText, IsKeptEvenWhenEmpty) {
  const Dictionary action = makeAction({{"cmd", 72}, {"str", "https://example.org"}});
  storeText(action, "");
  EXPECT_TRUE(action.contains("str"));
}

// Keystrokes, applications and items that arrive from outside.

TEST(StoreKeystroke, ReplacesKeyAndModifiersIncludingCapsLock) {
  const Dictionary action = makeAction({{"cmd", 10}, {"key", 255}, {"mod", 0x1000}});
  EXPECT_TRUE(storeKeystroke(action, 12, 0x0600));
  EXPECT_TRUE(isExactly(action, {{"cmd", 10}, {"key", 12}, {"mod", 0x0600}}));
}

TEST(StoreKeystroke, IsRefusedByAnyOtherCommand) {
  const Dictionary action = makeAction({{"cmd", 1}, {"mod", 0}});
  EXPECT_FALSE(storeKeystroke(action, 12, 0x0100));
  EXPECT_TRUE(isExactly(action, {{"cmd", 1}, {"mod", 0}}));
}

TEST(StoreKeystroke, TellsTheCommandByItsLow16Bits) {
  EXPECT_TRUE(storeKeystroke(makeAction({{"cmd", 0x1000A}}), 12, 0));
}

TEST(StoreApplication, StoresNameAndIdentifierEvenWhenEmpty) {
  const Dictionary action = makeAction({{"cmd", 71}});
  EXPECT_TRUE(storeApplication(action, "Viewer", ""));
  EXPECT_TRUE(isExactly(action, {{"cmd", 71}, {"str", "Viewer"}, {"bndl", ""}}));
}

TEST(StoreApplication, IsIgnoredOnceTheCommandHasChanged) {
  const Dictionary action = makeAction({{"cmd", 70}, {"str", ""}});
  EXPECT_FALSE(storeApplication(action, "Viewer", "a.b"));
  EXPECT_TRUE(isExactly(action, {{"cmd", 70}, {"str", ""}}));
}

TEST(StoreItem, AbbreviatesAPathInTheHomeFolder) {
  const ScopedEnvironment home("HOME", "/home/anna");
  const Dictionary action = makeAction({{"cmd", 70}});
  EXPECT_TRUE(storeItem(action, "/home/anna/Documents/letter.odt"));
  EXPECT_EQ(action.stringFor("str"), "~/Documents/letter.odt");
  EXPECT_TRUE(storeItem(action, "/etc/hosts"));
  EXPECT_EQ(action.stringFor("str"), "/etc/hosts");
}

TEST(StoreItem, IsIgnoredOnceTheCommandHasChanged) {
  const Dictionary action = makeAction({{"cmd", 71}, {"str", "Viewer"}});
  EXPECT_FALSE(storeItem(action, "/etc/hosts"));
  EXPECT_EQ(action.stringFor("str"), "Viewer");
}

// Showing.

TEST(KeystrokeText, IsEmptyWithoutAKey) {
  EXPECT_EQ(keystrokeText(makeAction({{"cmd", 10}, {"key", 255}, {"mod", 0x0100}})), "");
  EXPECT_EQ(keystrokeText(makeAction({{"cmd", 10}, {"key", 0x1FF}})), "");
}

TEST(ApplicationText, IsTheNameElseTheIdentifierElseADash) {
  EXPECT_EQ(applicationText(makeAction({{"str", "Viewer"}, {"bndl", "a.b"}})), "Viewer");
  EXPECT_EQ(applicationText(makeAction({{"str", ""}, {"bndl", "a.b"}})), "a.b");
  EXPECT_EQ(applicationText(makeAction({{"str", ""}, {"bndl", ""}})), "-");
  EXPECT_EQ(applicationText(makeAction({})), "-");
}

TEST(ItemText, IsThePathElseADash) {
  EXPECT_EQ(itemText(makeAction({{"str", "~/a"}})), "~/a");
  EXPECT_EQ(itemText(makeAction({{"str", ""}})), "-");
  EXPECT_EQ(itemText(makeAction({{"str", 5}})), "-");
}

TEST(ScrollCount, IsShownByItsMagnitude) {
  EXPECT_EQ(scrollCountOf(makeAction({{"cnt", -3}})), 3);
  EXPECT_EQ(scrollCountOf(makeAction({})), 0);
  EXPECT_EQ(scrollCountOf(makeAction({{"cnt", std::numeric_limits<std::int32_t>::min()}})), 2147483648);
}

}  // namespace
}  // namespace veltrix
