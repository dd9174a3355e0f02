#include "actions/assignment_title.h"

#include <gtest/gtest.h>

#include <rapidcheck/gtest.h>

#include "keyboard/key_names.h"
#include "settings/modifier_mask.h"
#include "tests/support/arbitrary_settings.h"
#include "tests/support/settings_documents.h"

namespace veltrix {
namespace {

using plist::Array;
using plist::Dictionary;
using testing::arrayOf;
using testing::clickOf;
using testing::dictionaryOf;

constexpr int kKeypadFive = 87;

// Marks what went through the look-up.
std::string marked(std::string_view key) {
  return "<" + std::string(key) + ">";
}

CommandTree sampleTree() {
  const auto command = [](int code, const char* name) {
    return dictionaryOf({{"command", code}, {"name", name}});
  };
  const auto commands =
      arrayOf({command(1, "Click"), command(35, "Copy"), command(20, "Scroll Up"), command(73, "Run Script"),
               command(180, "Text snippet 1"), dictionaryOf({{"command", 60}})});
  return CommandTree(arrayOf({dictionaryOf({{"category", "All"}, {"commands", commands}})}), 0x1090);
}

std::string titleOf(const Dictionary& action, const Array& snippets = {}) {
  return assignmentTitle(action, action.int32For("cmd"), sampleTree(), snippets, marked);
}

std::string titleOfUrl(const char* url) {
  return titleOf(dictionaryOf({{"cmd", 72}, {"str", url}}));
}

std::string titleOfItem(const char* path) {
  return titleOf(dictionaryOf({{"cmd", 70}, {"str", path}}));
}

std::string titleOfKeystroke(std::int64_t key, std::int64_t modifiers) {
  return titleOf(dictionaryOf({{"cmd", 10}, {"key", key}, {"mod", modifiers}}));
}

TEST(AssignmentTitle, ALabelGoesBeforeEverything) {
  EXPECT_EQ(titleOf(dictionaryOf({{"cmd", 1}, {"mod", kControlModifier}, {"label", "Mine"}})), "Mine");
  EXPECT_EQ(titleOf(dictionaryOf({{"cmd", 999}, {"label", "Mine"}})), "Mine");
  EXPECT_EQ(titleOf(dictionaryOf({{"cmd", 35}, {"label", ""}})), "<Copy>");
  EXPECT_EQ(titleOf(dictionaryOf({{"cmd", 35}, {"label", 7}})), "<Copy>");
}

TEST(AssignmentTitle, AClickWithControlAndCommandNamesTheKeysThenTheClick) {
  EXPECT_EQ(titleOf(clickOf(1, kControlModifier | kCommandModifier)), "Control+Command+<Click>");
  EXPECT_EQ(titleOf(clickOf(1, kShiftModifier)), "Shift+<Click>");
}

TEST(AssignmentTitle, AClickWithoutModifiersIsItsName) {
  EXPECT_EQ(titleOf(clickOf(1, 0)), "<Click>");
  EXPECT_EQ(titleOf(clickOf(1, 0x10000)), "<Click>");  // only the low 16 bits count
}

TEST(AssignmentTitle, AClickThatTheTreeLacksIsADash) {
  EXPECT_EQ(titleOf(clickOf(2, 0)), "-");
  EXPECT_EQ(titleOf(clickOf(2, kShiftModifier)), "Shift+-");
}

TEST(AssignmentTitle, AKeystrokeIsTypedWithoutSeparators) {
  ASSERT_GE(GetKeyboardInformation(nullptr, kStringTable), 0);
  EXPECT_EQ(titleOfKeystroke(0, kControlModifier | kShiftModifier),
            "<Type> ControlShift" + GetKeyNameWithCase(0, true));
  EXPECT_EQ(titleOfKeystroke(kKeypadFive, 0), "<Type> Num5");
}

TEST(AssignmentTitle, AKeystrokeWithoutAKeyNamesItsModifiersOrNone) {
  EXPECT_EQ(titleOfKeystroke(255, kShiftModifier), "<Type> Shift");
  EXPECT_EQ(titleOfKeystroke(255, 0), "<Type> (none)");
}

TEST(AssignmentTitle, AKeystrokeReadsTheLowBitsOfItsNumbers) {
  EXPECT_EQ(titleOfKeystroke(0x1FF, 0x10000 | kShiftModifier), "<Type> Shift");
  EXPECT_EQ(titleOfKeystroke(-1, kShiftModifier), "<Type> Shift");
}

TEST(AssignmentTitle, AnItemIsTheLastPartOfItsPath) {
  EXPECT_EQ(titleOfItem("~/Documents/letter.odt"), "letter.odt");
  EXPECT_EQ(titleOfItem("~/Documents/"), "Documents");
  EXPECT_EQ(titleOfItem("/srv//"), "srv");
  EXPECT_EQ(titleOfItem("letter.odt"), "letter.odt");
  EXPECT_EQ(titleOfItem("/"), "/");
  EXPECT_EQ(titleOfItem("///"), "/");
  EXPECT_EQ(titleOfItem("~"), "~");
}

TEST(AssignmentTitle, AUrlOfHttpWwwHostAndSlashIsTheHostAlone) {
  EXPECT_EQ(titleOfUrl("http://www.example.org/"), "example.org");
}

TEST(AssignmentTitle, TheUrlHttpAloneStays) {
  EXPECT_EQ(titleOfUrl("http://"), "http://");
}

TEST(AssignmentTitle, TheUrlSlashStays) {
  EXPECT_EQ(titleOfUrl("/"), "/");
}

TEST(AssignmentTitle, EachPartOfAUrlGoesOnlyWhenSomethingIsLeft) {
  EXPECT_EQ(titleOfUrl("http://x"), "x");
  EXPECT_EQ(titleOfUrl("http:///"), "/");
  EXPECT_EQ(titleOfUrl("http://www."), "www.");
  EXPECT_EQ(titleOfUrl("www./"), "/");
  EXPECT_EQ(titleOfUrl("www.x"), "x");
  EXPECT_EQ(titleOfUrl("x/"), "x");
  EXPECT_EQ(titleOfUrl("example.org//"), "example.org/");
}

TEST(AssignmentTitle, OtherSchemesAndLettersOfAUrlStay) {
  EXPECT_EQ(titleOfUrl("https://www.example.org/"), "https://www.example.org");
  EXPECT_EQ(titleOfUrl("HTTP://example.org"), "HTTP://example.org");
  EXPECT_EQ(titleOfUrl("http://WWW.example.org"), "WWW.example.org");
  EXPECT_EQ(titleOfUrl("http://http://x"), "http://x");
}

TEST(AssignmentTitle, AnApplicationIsItsNameAsItStands) {
  EXPECT_EQ(titleOf(dictionaryOf({{"cmd", 71}, {"str", "Editor.app"}, {"bndl", "org.example.Editor"}})),
            "Editor.app");
}

TEST(AssignmentTitle, WhatHasNoTextIsADash) {
  for (const int command : {70, 71, 72}) {
    EXPECT_EQ(titleOf(dictionaryOf({{"cmd", command}, {"str", ""}})), "-");
    EXPECT_EQ(titleOf(dictionaryOf({{"cmd", command}, {"bndl", "org.example.Editor"}})), "-");
    EXPECT_EQ(titleOf(dictionaryOf({{"cmd", command}, {"str", 5}})), "-");
  }
}

TEST(AssignmentTitle, EveryOtherCommandIsItsLocalisedName) {
  EXPECT_EQ(titleOf(dictionaryOf({{"cmd", 20}, {"cnt", 3}})), "<Scroll Up>");
  EXPECT_EQ(titleOf(dictionaryOf({{"cmd", 73}, {"str", "echo"}})), "<Run Script>");
  EXPECT_EQ(titleOf(dictionaryOf({{"cmd", 35}, {"mod", kShiftModifier}})), "<Copy>");
}

TEST(AssignmentTitle, AnUnknownCommandIsADash) {
  EXPECT_EQ(titleOf(dictionaryOf({{"cmd", 999}})), "-");
  EXPECT_EQ(titleOf(dictionaryOf({{"cmd", -1}})), "-");
  EXPECT_EQ(titleOf(dictionaryOf({{"cmd", 0}})), "-");
}

TEST(AssignmentTitle, ACommandWithoutATitleIsADash) {
  const auto silent = [](std::string_view) { return std::string(); };
  EXPECT_EQ(assignmentTitle(dictionaryOf({{"cmd", 35}}), 35, sampleTree(), {}, silent), "-");
  EXPECT_EQ(assignmentTitle(dictionaryOf({{"cmd", 60}}), 60, sampleTree(), {},
                            [](std::string_view key) { return std::string(key); }),
            "-");
}

TEST(AssignmentTitle, ASnippetIsItsOwnName) {
  const auto snippets = arrayOf({dictionaryOf({{"name", "Greeting"}})});
  EXPECT_EQ(titleOf(dictionaryOf({{"cmd", 180}}), snippets), "<Greeting>");
  EXPECT_EQ(titleOf(dictionaryOf({{"cmd", 180}})), "<Text snippet 1>");
}

TEST(AssignmentTitle, TheCommandThatIsGivenCountsInPlaceOfTheActionsOwn) {
  EXPECT_EQ(assignmentTitle(clickOf(35, kShiftModifier), 1, sampleTree(), {}, marked), "Shift+<Click>");
}

TEST(AssignmentTitle, WithoutAnActionThereIsStillATitle) {
  EXPECT_EQ(assignmentTitle({}, 35, sampleTree(), {}, marked), "<Copy>");
  EXPECT_EQ(assignmentTitle({}, 72, sampleTree(), {}, marked), "-");
}

RC_GTEST_PROP(AssignmentTitleProperty, IsNeverEmptyAndLeavesTheActionAlone, (std::int32_t command)) {
  const auto pairs =
      *testing::arbitraryPairs({"cmd", "label", "mod", "key", "cnt", "str", "bndl", "unknown"});
  const auto action = testing::dictionaryFrom(pairs);
  const auto code = *rc::gen::oneOf(rc::gen::just(command), rc::gen::inRange<std::int32_t>(0, 256));
  RC_ASSERT(!assignmentTitle(action, code, sampleTree(), {}, marked).empty());
  RC_ASSERT(plist::equal(action, testing::dictionaryFrom(pairs)));
}

RC_GTEST_PROP(AssignmentTitleProperty, AUrlIsShortenedToAPartOfItself, (const std::string& host)) {
  const std::string url = *rc::gen::element<std::string>("http://", "http://www.", "www.", "") + host +
                          *rc::gen::element<std::string>("/", "");
  RC_PRE(!url.empty());
  const auto title = titleOfUrl(url.c_str());
  RC_ASSERT(title == "-" || url.find(title) != std::string::npos);
}

}  // namespace
}  // namespace veltrix
