// Opening and closing the action editor.
#include <QDialogButtonBox>
#include <QStackedWidget>
#include <QTest>

#include "editor/button_tabs.h"
#include "tests/support/command_trees.h"
#include "tests/support/editor_fixture.h"

namespace veltrix::testing {
namespace {

class EditOpeningTest : public EditControllerTest {};

TEST_F(EditOpeningTest, ButtonsAreFoundUnderTwoDigits) {
  setAction("03", makeDictionary({{"cmd", 2}}));
  setAction("12", makeDictionary({{"cmd", 20}, {"cnt", 4}}));
  edit(3, [&] { EXPECT_EQ(selected(1), 1); });
  edit(12, [&] { EXPECT_EQ(page(), 4); });
  EXPECT_EQ(dialogsRun, 2);
}

TEST_F(EditOpeningTest, AButtonWithoutActionShowsNoDialog) {
  EXPECT_FALSE(edit(3, [] {}));
  setAction("03", {});
  entry.dictionaryFor("buttons").set("03", 7);
  EXPECT_FALSE(edit(3, [] {}));
  entry.remove("buttons");
  EXPECT_FALSE(edit(3, [] {}));
  EXPECT_EQ(dialogsRun, 0);
  EXPECT_TRUE(controller->vtxGetCurrentAction().isNull());
}

TEST_F(EditOpeningTest, WorksOnACopyUntilItIsConfirmed) {
  const plist::Dictionary before = makeDictionary({{"cmd", 1}, {"mod", 0}, {"mine", plist::Array::create()}});
  setAction("03", before);
  EXPECT_TRUE(edit(3, [&] {
    choose(1, 1);
    EXPECT_EQ(action("03").int32For("cmd"), 1);
    EXPECT_EQ(controller->vtxGetCurrentAction().int32For("cmd"), 11);
    EXPECT_FALSE(controller->vtxGetCurrentAction().get("mine").asArray().sameAs(before.arrayFor("mine")));
    ok();
  }));
  EXPECT_EQ(before.int32For("cmd"), 1);
  EXPECT_TRUE(plist::equal(action("03"), makeDictionary({{"cmd", 11}, {"mine", plist::Array::create()}})));
}

TEST_F(EditOpeningTest, CancelLeavesTheButtonsAsTheyWere) {
  setAction("03", makeDictionary({{"cmd", 1}, {"mod", 0}}));
  const plist::Dictionary before = action("03");
  EXPECT_FALSE(edit(3, [&] {
    choose(3, 2);
    type("outActURLFieldURL", "https://example.org");
    click("buttonEditCancel");
  }));
  EXPECT_TRUE(action("03").sameAs(before));
  EXPECT_TRUE(plist::equal(before, makeDictionary({{"cmd", 1}, {"mod", 0}})));
}

TEST_F(EditOpeningTest, CancelKeepsWhatWasDoneToSnippets) {
  setAction("03", makeDictionary({{"cmd", 182}}));
  EXPECT_FALSE(edit(3, [&] {
    type("outActSnippetFieldName", "Greeting");
    type("outActSnippetFieldText", "Hello");
    click("buttonEditCancel");
  }));
  EXPECT_EQ(snippets.at(2).asDictionary().stringFor("name"), "Greeting");
  EXPECT_EQ(snippets.at(2).asDictionary().stringFor("text"), "Hello");
}

TEST_F(EditOpeningTest, ConfirmingWithoutAChangeStoresTheSameAction) {
  const plist::Dictionary before = makeDictionary({{"cmd", 9999}, {"label", "Mine"}, {"cnt", -3}});
  EXPECT_TRUE(plist::equal(editAction(before, [] {}), before));
}

TEST_F(EditOpeningTest, ReturnConfirmsAndEscapeCancels) {
  setAction("03", makeDictionary({{"cmd", 1}}));
  EXPECT_TRUE(edit(3, [&] { press(Qt::Key_Return); }));
  EXPECT_TRUE(edit(3, [&] {
    find("outMainFieldLabel")->setFocus();
    press(Qt::Key_Enter);
  }));
  EXPECT_FALSE(edit(3, [&] { press(Qt::Key_Escape); }));
  EXPECT_FALSE(dialog->isVisible());
}

TEST_F(EditOpeningTest, ReturnMakesALineInATextAndOkHasALetter) {
  setAction("03", makeDictionary({{"cmd", 73}, {"str", "a"}}));
  EXPECT_TRUE(edit(3, [&] {
    find("outActAppleScriptFieldScript")->setFocus();
    press(Qt::Key_End);
    press(Qt::Key_Return);
    press(Qt::Key_B);
    EXPECT_TRUE(dialog->isVisible());
    press(Qt::Key_O, Qt::AltModifier);  // the button is seen going down first
    EXPECT_TRUE(QTest::qWaitFor([this] { return !dialog->isVisible(); }));
  }));
  EXPECT_EQ(action("03").stringFor("str"), "a\nb");
}

TEST_F(EditOpeningTest, ClosingTheWindowCancels) {
  setAction("03", makeDictionary({{"cmd", 1}}));
  EXPECT_FALSE(edit(3, [&] {
    choose(1, 1);
    dialog->close();
  }));
  EXPECT_EQ(action("03").int32For("cmd"), 1);
}

TEST_F(EditOpeningTest, LightsTheButtonInThePictureOfTheModel) {
  setAction("08", makeDictionary({{"cmd", 1}}));
  for (const std::int32_t page : {0, 3, 5}) {
    device = page;
    edit(8, [&] {
      auto* pages = find<QStackedWidget>("outEditTabsDevices");
      EXPECT_EQ(pages->currentIndex(), page);
      auto* tabs = pages->currentWidget()->findChild<ButtonTabs*>();
      EXPECT_EQ(tabs->lit(), (QStringList{"button0", "button1"}));
      EXPECT_EQ(tabs->deviceTab(), page + 2);
    });
  }
}

TEST_F(EditOpeningTest, WithoutAModelNoPictureChanges) {
  setAction("00", makeDictionary({{"cmd", 1}}));
  for (const std::int32_t page : {-1, 6}) {
    device = page;
    edit(0, [&] { EXPECT_EQ(find<QStackedWidget>("outEditTabsDevices")->currentIndex(), 0); });
  }
  EXPECT_EQ(dialogsRun, 2);
}

TEST_F(EditOpeningTest, TheWidgetsAreMadeAtTheFirstOpening) {
  QWidget window;
  const Bundle nothing("/nonexistent");
  VeltrixEditController other(nothing, this, &window, 0x1090);
  EXPECT_TRUE(window.children().isEmpty());
  EXPECT_FALSE(other.vtxOverrideKeysIsActive());
  other.vtxGetUIFromSettings();
  other.vtxGetSettingsFromUI(true);
}

TEST_F(EditOpeningTest, TheLastControllerIsTheOneInstance) {
  EXPECT_EQ(gVeltrixEditController, controller.get());
  controller.reset();
  EXPECT_EQ(gVeltrixEditController, nullptr);
}

TEST_F(EditOpeningTest, WithoutATreeEverythingElseStillWorks) {
  makeController(plist::Array::create());
  EXPECT_EQ(controller->vtxGetAssignmentsTree().count(), 0U);
  const auto after = editAction(makeDictionary({{"cmd", 72}, {"str", "a"}}),
                                [&] { type("outActURLFieldURL", "https://example.org"); });
  EXPECT_TRUE(plist::equal(after, makeDictionary({{"cmd", 72}, {"str", "https://example.org"}})));
}

// What the menus of buttons ask.

TEST_F(EditOpeningTest, FindsTheFirstPlaceOfACommand) {
  std::int32_t category = 7;
  std::int32_t row = 7;
  std::optional<std::string> categoryTitle;
  std::optional<std::string> title;
  EXPECT_TRUE(controller->findCommandInTree(1, {}, &category, &categoryTitle, &row, &title));
  EXPECT_EQ(category, 0);
  EXPECT_EQ(row, 0);
  EXPECT_EQ(categoryTitle, "Clicks");
  EXPECT_EQ(title, "Click");
  EXPECT_TRUE(controller->findCommandInTree(23, {}, nullptr, nullptr, &row, nullptr));
  EXPECT_EQ(row, 1);
}

TEST_F(EditOpeningTest, ACommandThatIsNotThereEmptiesTheOutputs) {
  std::int32_t category = 7;
  std::int32_t row = 7;
  std::optional<std::string> categoryTitle = "old";
  std::optional<std::string> title = "old";
  EXPECT_FALSE(controller->findCommandInTree(9999, {}, &category, &categoryTitle, &row, &title));
  EXPECT_EQ(category, -1);
  EXPECT_EQ(row, -1);
  EXPECT_EQ(categoryTitle, std::nullopt);
  EXPECT_EQ(title, std::nullopt);
}

TEST_F(EditOpeningTest, ASnippetIsFoundUnderItsOwnName) {
  snippets.append(makeDictionary({{"name", "Greeting"}}));
  std::optional<std::string> title;
  EXPECT_TRUE(controller->findCommandInTree(180, snippets, nullptr, nullptr, nullptr, &title));
  EXPECT_EQ(title, "Greeting");
  EXPECT_TRUE(controller->findCommandInTree(182, snippets, nullptr, nullptr, nullptr, &title));
  EXPECT_EQ(title, "Text 3");
  EXPECT_EQ(controller->snippetNameFromArray(snippets, 0), "Greeting");
}

}  // namespace
}  // namespace veltrix::testing
