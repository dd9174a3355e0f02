// Applications, items and keystrokes that come to the action editor from elsewhere.
#include <QStackedWidget>

#include "tests/support/editor_fixture.h"
#include "tests/support/environment.h"

namespace veltrix::testing {
namespace {

class EditChoosersTest : public EditControllerTest {
 protected:
  // The sheets answer so; `meanwhile` is what happens while one is open.
  void answer(
      const std::optional<ChosenApplication>& application, const std::optional<std::string>& item,
      const std::function<void()>& meanwhile = [] {}) {
    controller->setChoosers({[=, this](QWidget* parent) {
                               EXPECT_EQ(parent, dialog);
                               meanwhile();
                               return application;
                             },
                             [=, this](QWidget* parent) {
                               EXPECT_EQ(parent, dialog);
                               meanwhile();
                               return item;
                             }});
  }

  static plist::Dictionary makeApplication() {
    return makeDictionary({{"cmd", 71}, {"str", "Old"}, {"bndl", "a.old"}});
  }
};

TEST_F(EditChoosersTest, AChosenApplicationIsStoredAndShown) {
  answer(ChosenApplication{"Viewer", "org.example.viewer"}, std::nullopt);
  const auto after = editAction(makeApplication(), [&] {
    click("buttonActChooseApp");
    EXPECT_EQ(text("outActAppFieldApp"), "Viewer");
  });
  EXPECT_TRUE(
      plist::equal(after, makeDictionary({{"cmd", 71}, {"str", "Viewer"}, {"bndl", "org.example.viewer"}})));
}

TEST_F(EditChoosersTest, AnApplicationWithoutIdentifierStoresAnEmptyOne) {
  answer(ChosenApplication{"Viewer", ""}, std::nullopt);
  const auto after = editAction(makeApplication(), [&] { click("buttonActChooseApp"); });
  EXPECT_TRUE(plist::equal(after, makeDictionary({{"cmd", 71}, {"str", "Viewer"}, {"bndl", ""}})));
}

TEST_F(EditChoosersTest, ACancelledSheetChangesNothing) {
  answer(std::nullopt, std::nullopt);
  EXPECT_TRUE(
      plist::equal(editAction(makeApplication(), [&] { click("buttonActChooseApp"); }), makeApplication()));
  const auto item = makeDictionary({{"cmd", 70}, {"str", "~/a"}});
  EXPECT_TRUE(plist::equal(editAction(item, [&] { click("buttonActChooseItem"); }), item));
}

TEST_F(EditChoosersTest, AnItemInTheHomeFolderBeginsWithATilde) {
  const ScopedEnvironment home("HOME", "/home/anna");
  answer(std::nullopt, "/home/anna/Documents");
  const auto after = editAction(makeDictionary({{"cmd", 70}}), [&] {
    click("buttonActChooseItem");
    EXPECT_EQ(text("outActItemFieldItem"), "~/Documents");
  });
  EXPECT_EQ(after.stringFor("str"), "~/Documents");
}

TEST_F(EditChoosersTest, AnAnswerAfterAnotherCommandWasChosenIsIgnored) {
  answer(ChosenApplication{"Viewer", "a.b"}, "/etc/hosts", [&] { choose(1, 1); });
  EXPECT_TRUE(plist::equal(editAction(makeApplication(), [&] { click("buttonActChooseApp"); }),
                           makeDictionary({{"cmd", 11}, {"bndl", "a.old"}})));
  EXPECT_TRUE(plist::equal(editAction(makeDictionary({{"cmd", 70}}), [&] { click("buttonActChooseItem"); }),
                           makeDictionary({{"cmd", 11}})));
}

// Keystrokes.

TEST_F(EditChoosersTest, AKeystrokeIsStoredAndShown) {
  const auto after = editAction(makeDictionary({{"cmd", 10}, {"key", 255}, {"mod", 0}}), [&] {
    controller->vtxReceiveKeystroke(49, u' ', 0x1100);
    EXPECT_FALSE(text("outActKeyFieldKeystroke").isEmpty());
    EXPECT_TRUE(find<QCheckBox>("outActKeyBoxControl")->isChecked());
    EXPECT_TRUE(find<QCheckBox>("outActKeyBoxCommand")->isChecked());
  });
  EXPECT_TRUE(plist::equal(after, makeDictionary({{"cmd", 10}, {"key", 49}, {"mod", 0x1100}})));
}

TEST_F(EditChoosersTest, AKeystrokeWithoutACharacterIsStoredByItsKey) {
  const auto after =
      editAction(makeDictionary({{"cmd", 10}}), [&] { controller->vtxReceiveKeystroke(10, 0, 0x0600); });
  EXPECT_TRUE(plist::equal(after, makeDictionary({{"cmd", 10}, {"key", 10}, {"mod", 0x0600}})));
}

TEST_F(EditChoosersTest, OtherActionsTakeNoKeystroke) {
  const auto before = makeDictionary({{"cmd", 1}, {"mod", 0}});
  EXPECT_TRUE(
      plist::equal(editAction(before, [&] { controller->vtxReceiveKeystroke(12, u'q', 0x0100); }), before));
}

TEST_F(EditChoosersTest, AKeystrokeBeforeTheFirstOpeningIsNobodys) {
  controller->vtxReceiveKeystroke(12, u'q', 0x0100);
  EXPECT_TRUE(controller->vtxGetCurrentAction().isNull());
}

TEST_F(EditChoosersTest, KeysAreRecordedOnlyWhileTheFieldHasTheFocus) {
  EXPECT_FALSE(controller->vtxOverrideKeysIsActive());
  showAction(makeDictionary({{"cmd", 10}, {"key", 49}}), [&] {
    EXPECT_FALSE(controller->vtxOverrideKeysIsActive());
    find("outActKeyFieldKeystroke")->setFocus();
    EXPECT_TRUE(controller->vtxOverrideKeysIsActive());
    find("outMainFieldLabel")->setFocus();
    EXPECT_FALSE(controller->vtxOverrideKeysIsActive());
  });
}

TEST_F(EditChoosersTest, NoKeysAreRecordedInAnotherWindowOrAfterTheDialog) {
  showAction(makeDictionary({{"cmd", 10}, {"key", 49}}), [&] {
    find("outActKeyFieldKeystroke")->setFocus();
    QWidget other;
    other.show();
    QApplication::setActiveWindow(&other);
    EXPECT_FALSE(controller->vtxOverrideKeysIsActive());
    QApplication::setActiveWindow(dialog);
    EXPECT_TRUE(controller->vtxOverrideKeysIsActive());
  });
  EXPECT_FALSE(controller->vtxOverrideKeysIsActive());
}

TEST_F(EditChoosersTest, AnotherCommandTakesTheFocusFromTheField) {
  showAction(makeDictionary({{"cmd", 10}, {"key", 49}}), [&] {
    find("outActKeyFieldKeystroke")->setFocus();
    choose(0, 0);
    EXPECT_FALSE(controller->vtxOverrideKeysIsActive());
  });
}

}  // namespace
}  // namespace veltrix::testing
