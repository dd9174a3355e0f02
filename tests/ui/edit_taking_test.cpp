// What a person's changes do to the action and to the snippets.
#include <QTest>

#include "tests/support/editor_fixture.h"

namespace veltrix::testing {
namespace {

class EditTakingTest : public EditControllerTest {
 protected:
  void expectAction(const plist::Dictionary& action, std::initializer_list<plist::Entry> entries) {
    EXPECT_TRUE(plist::equal(action, makeDictionary(entries)))
        << "cmd " << action.int32For("cmd") << ", " << action.count() << " keys";
  }
};

TEST_F(EditTakingTest, AClickInTheBrowserStartsTheCommandAfresh) {
  expectAction(editAction(makeDictionary({{"cmd", 10}, {"key", 12}, {"mod", 0x0100}, {"label", "Mine"}}),
                          [&] { choose(0, 1); }),
               {{"cmd", 2}, {"mod", 0}, {"label", "Mine"}});
}

TEST_F(EditTakingTest, ACheckBoxAfterwardsStoresTheMaskWithoutClearing) {
  expectAction(editAction(makeDictionary({{"cmd", 10}, {"key", 12}, {"mod", 0x0100}}),
                          [&] {
                            choose(0, 1);
                            controller->vtxGetCurrentAction().set("kept", 5);
                            click("outActClickBoxOption");
                            click("outActClickBoxShift");
                          }),
               {{"cmd", 2}, {"mod", 0x0A00}, {"kept", 5}});
}

TEST_F(EditTakingTest, ACategoryStandsForItsFirstCommand) {
  expectAction(editAction(makeDictionary({{"cmd", 1}, {"mod", 0}}),
                          [&] {
                            clickRow(CommandBrowser::kCategories, 2);
                            EXPECT_EQ(selected(1), 0);
                            EXPECT_EQ(page(), 4);
                          }),
               {{"cmd", 20}, {"cnt", 1}});
}

TEST_F(EditTakingTest, TheSelectedCategoryClickedAgainChoosesItsFirstCommandAgain) {
  expectAction(editAction(makeDictionary({{"cmd", 23}, {"cnt", 9}}), [&] { clickRow(0, 2); }),
               {{"cmd", 20}, {"cnt", 1}});
}

TEST_F(EditTakingTest, TheSelectedCommandClickedAgainStartsAfresh) {
  expectAction(editAction(makeDictionary({{"cmd", 72}, {"str", "https://example.org"}}),
                          [&] {
                            clickRow(CommandBrowser::kCommands, 2);
                            EXPECT_EQ(text("outActURLFieldURL"), "");
                          }),
               {{"cmd", 72}, {"str", ""}});
}

TEST_F(EditTakingTest, ACategoryWithoutCommandsIsCommandZero) {
  expectAction(editAction(makeDictionary({{"cmd", 1}, {"mod", 0x100}}), [&] { clickRow(0, 5); }),
               {{"cmd", 0}});
}

TEST_F(EditTakingTest, ACommandThatStandsTwiceIsSelectedInItsFirstPlace) {
  expectAction(editAction(makeDictionary({{"cmd", 10}}),
                          [&] {
                            clickRow(0, 6);
                            EXPECT_EQ(selected(0), 0);
                            EXPECT_EQ(selected(1), 0);
                          }),
               {{"cmd", 1}, {"mod", 0}});
}

TEST_F(EditTakingTest, ArrowKeysChooseAsClicksDo) {
  expectAction(editAction(makeDictionary({{"cmd", 1}, {"mod", 0x100}}),
                          [&] {
                            press(Qt::Key_Down);
                            EXPECT_EQ(controller->vtxGetCurrentAction().int32For("cmd"), 2);
                            press(Qt::Key_Left);
                            press(Qt::Key_Down);
                            EXPECT_EQ(controller->vtxGetCurrentAction().int32For("cmd"), 10);
                            press(Qt::Key_Right);
                            press(Qt::Key_Down);
                          }),
               {{"cmd", 11}});
}

TEST_F(EditTakingTest, TypedLettersChooseAsClicksDo) {
  expectAction(
      editAction(makeDictionary({{"cmd", 71}}), [&] { QTest::keyClicks(QApplication::focusWidget(), "sc"); }),
      {{"cmd", 73}, {"str", ""}});
}

TEST_F(EditTakingTest, TheIdentifierOfAnApplicationSurvivesAnotherCommand) {
  expectAction(editAction(makeDictionary({{"cmd", 71}, {"str", "Viewer"}, {"bndl", "a.b"}}),
                          [&] {
                            choose(1, 1);
                            choose(3, 0);
                            EXPECT_EQ(text("outActAppFieldApp"), "a.b");
                          }),
               {{"cmd", 71}, {"str", ""}, {"bndl", "a.b"}});
}

TEST_F(EditTakingTest, ANewKeystrokeHasNoKey) {
  expectAction(editAction(makeDictionary({{"cmd", 1}, {"mod", 0x100}}), [&] { clickRow(0, 1); }),
               {{"cmd", 10}, {"key", 255}, {"mod", 0}});
}

TEST_F(EditTakingTest, ACheckBoxOfAKeystrokeChangesTheShownCombination) {
  QString before;
  const auto after = editAction(makeDictionary({{"cmd", 10}, {"key", 49}, {"mod", 0}}), [&] {
    before = text("outActKeyFieldKeystroke");
    click("outActKeyBoxControl");
    EXPECT_NE(text("outActKeyFieldKeystroke"), before);
    EXPECT_TRUE(text("outActKeyFieldKeystroke").endsWith(before));
  });
  expectAction(after, {{"cmd", 10}, {"key", 49}, {"mod", 0x1000}});
}

TEST_F(EditTakingTest, ScrollSpeedsAreStoredAsChosen) {
  expectAction(editAction(makeDictionary({{"cmd", 20}, {"cnt", 1}}),
                          [&] {
                            find("outActScrollMenuSpeed")->setFocus();
                            press(Qt::Key_Down);
                            press(Qt::Key_Down);
                          }),
               {{"cmd", 20}, {"cnt", 3}});
}

TEST_F(EditTakingTest, ANegativeSpeedIsStoredBackByItsMagnitudeWhenChosenAgain) {
  expectAction(editAction(makeDictionary({{"cmd", 20}, {"cnt", -3}}),
                          [&] {
                            auto* menu = find<QComboBox>("outActScrollMenuSpeed");
                            menu->setFocus();
                            menu->showPopup();
                            QTest::keyClick(menu->view(), Qt::Key_Return);
                          }),
               {{"cmd", 20}, {"cnt", 3}});
}

TEST_F(EditTakingTest, ANegativeTagIsStoredByItsMagnitude) {
  expectAction(editAction(makeDictionary({{"cmd", 20}, {"cnt", 1}}),
                          [&] {
                            auto* menu = find<QComboBox>("outActScrollMenuSpeed");
                            menu->setItemData(1, -2);
                            menu->setFocus();
                            press(Qt::Key_Down);
                          }),
               {{"cmd", 20}, {"cnt", 2}});
}

TEST_F(EditTakingTest, ALabelIsStoredWhileItIsTyped) {
  const auto after = editAction(makeDictionary({{"cmd", 1}}), [&] {
    type("outMainFieldLabel", "My click");
    EXPECT_EQ(controller->vtxGetCurrentAction().stringFor("label"), "My click");
  });
  expectAction(after, {{"cmd", 1}, {"label", "My click"}});
}

TEST_F(EditTakingTest, AnEmptyLabelRemovesTheKey) {
  expectAction(
      editAction(makeDictionary({{"cmd", 1}, {"label", "Mine"}}), [&] { type("outMainFieldLabel", ""); }),
      {{"cmd", 1}});
}

TEST_F(EditTakingTest, AnAddressIsStoredWhileItIsTyped) {
  expectAction(editAction(makeDictionary({{"cmd", 72}, {"str", "x"}}),
                          [&] { type("outActURLFieldURL", "https://example.org"); }),
               {{"cmd", 72}, {"str", "https://example.org"}});
}

TEST_F(EditTakingTest, AnEmptiedAddressStaysAsAnEmptyText) {
  expectAction(
      editAction(makeDictionary({{"cmd", 72}, {"str", "x"}}), [&] { type("outActURLFieldURL", ""); }),
      {{"cmd", 72}, {"str", ""}});
}

TEST_F(EditTakingTest, AScriptIsStoredWithItsLines) {
  expectAction(editAction(makeDictionary({{"cmd", 73}, {"str", ""}}),
                          [&] {
                            type("outActAppleScriptFieldScript", "one");
                            press(Qt::Key_Return);
                            press(Qt::Key_Return);
                            press(Qt::Key_T);
                          }),
               {{"cmd", 73}, {"str", "one\n\nt"}});
}

TEST_F(EditTakingTest, ASnippetIsChangedInTheDocumentAtOnce) {
  const auto second = makeDictionary({{"name", "Snippet 3"}, {"text", ""}});
  for (const auto& snippet : {makeDictionary({}), makeDictionary({}), second}) {
    snippets.append(snippet);
  }
  expectAction(editAction(makeDictionary({{"cmd", 182}}),
                          [&] {
                            type("outActSnippetFieldName", "Greeting");
                            EXPECT_EQ(second.stringFor("name"), "Greeting");
                            EXPECT_EQ(column(1).title(1), "Greeting");
                            type("outActSnippetFieldText", "Hi");
                            press(Qt::Key_Return);
                          }),
               {{"cmd", 182}});
  EXPECT_EQ(second.stringFor("text"), "Hi\n");
}

TEST_F(EditTakingTest, ABlankThatKeepsWordsTogetherSurvivesAnEdit) {
  snippets.append(makeDictionary({{"name", "Price"}, {"text", "5\u00A0\u20AC"}}));
  editAction(makeDictionary({{"cmd", 180}}), [&] {
    find("outActSnippetFieldText")->setFocus();
    press(Qt::Key_End);
    press(Qt::Key_X);
  });
  EXPECT_EQ(snippets.at(0).asDictionary().stringFor("text"), "5\u00A0\u20ACx");
}

TEST_F(EditTakingTest, TheFirstEditOfAMissingSnippetFillsTheListUp) {
  editAction(makeDictionary({{"cmd", 182}}), [&] {
    EXPECT_EQ(snippets.count(), 0U);
    type("outActSnippetFieldText", "Hi");
  });
  ASSERT_EQ(snippets.count(), 3U);
  EXPECT_FALSE(snippets.at(0).asDictionary().contains("name"));
  EXPECT_EQ(snippets.at(0).asDictionary().stringFor("text"), "");
  EXPECT_EQ(snippets.at(2).asDictionary().stringFor("text"), "Hi");
}

TEST_F(EditTakingTest, ChoosingAnotherSnippetShowsItsOwnTexts) {
  snippets.append(makeDictionary({{"name", "First"}, {"text", "one"}}));
  snippets.append(makeDictionary({}));
  snippets.append(makeDictionary({{"name", "Third"}, {"text", "three"}}));
  editAction(makeDictionary({{"cmd", 180}}), [&] {
    clickRow(CommandBrowser::kCommands, 1);
    EXPECT_EQ(text("outActSnippetFieldName"), "Third");
  });
  EXPECT_EQ(snippets.at(0).asDictionary().stringFor("text"), "one");
  EXPECT_EQ(snippets.at(2).asDictionary().stringFor("text"), "three");
  EXPECT_EQ(action("03").int32For("cmd"), 182);
}

TEST_F(EditTakingTest, AFieldOfNoMeaningChangesNothing) {
  showAction(makeDictionary({{"cmd", 182}}), [&] {
    controller->controlTextDidChange(find("outActAppFieldApp"));
    controller->controlTextDidChange(nullptr);
    EXPECT_EQ(snippets.count(), 0U);
    EXPECT_EQ(controller->vtxGetCurrentAction().count(), 1U);
  });
}

TEST_F(EditTakingTest, ASnippetFieldMeansNothingWhileAnotherCommandIsSelected) {
  showAction(makeDictionary({{"cmd", 1}}), [&] {
    controller->controlTextDidChange(find("outActSnippetFieldName"));
    EXPECT_EQ(snippets.count(), 0U);
  });
}

}  // namespace
}  // namespace veltrix::testing
