// What the pop-up menus of the buttons show and store.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDialog>
#include <QTest>
#include <map>
#include <set>

#include "actions/template_menu.h"
#include "pane/assignment_menu.h"
#include "settings/button_key.h"
#include "tests/support/pane_fixture.h"

namespace veltrix::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr std::uint16_t kCrest = 0x1020;  // four buttons, two chords: the menus of group 1 or 2

plist::Dictionary action(std::int32_t command) {
  auto result = plist::Dictionary::create();
  result.set("cmd", command);
  return result;
}

plist::Dictionary withText(std::int32_t command, const char* text) {
  auto result = action(command);
  result.set("str", text);
  return result;
}

plist::Dictionary withModifiers(std::int32_t command, std::int32_t modifiers) {
  auto result = action(command);
  result.set("mod", modifiers);
  return result;
}

class ButtonMenusTest : public PaneTest {
 protected:
  // The pane with one trackball; buttons that are not named are right clicks, button 0 is the click.
  void openWith(const std::map<std::int32_t, plist::Dictionary>& actions) {
    plist::Dictionary entry = makeEntry(kCrest);
    auto buttons = entry.dictionaryFor("buttons");
    for (const std::int32_t button : {0, 1, 2, 3, 8, 9}) {
      buttons.set(buttonKey(button), withModifiers(button == 0 ? 1 : 2, 0));
    }
    for (const auto& [button, value] : actions) {
      buttons.set(buttonKey(button), value);
    }
    writeUserFile(makeDocument({entry}));
    plug({{kCrest, 0x0100}});
    openPane();
    log.clear();
  }

  AssignmentMenu* menu(const std::string& which) const {
    return find<AssignmentMenu>(("outBtnMenuDev1" + which).c_str());
  }
  std::string shown(const std::string& which) const { return menu(which)->currentText().toStdString(); }
  plist::Dictionary stored(std::int32_t button) const {
    return userEntry(kCrest).dictionaryFor("buttons").dictionaryFor(buttonKey(button));
  }
};

TEST_F(ButtonMenusTest, EveryMenuIsACopyWhoseEditItemKnowsItsButton) {
  openWith({});
  std::set<const QAbstractItemModel*> models;
  for (const auto& [name, button] : std::map<std::string, int>{{"Dev1Button1", 0},
                                                               {"Dev1Chord2", 9},
                                                               {"Dev2Button4", 3},
                                                               {"Dev3Button4", 3},
                                                               {"Dev4Chord1", 8},
                                                               {"Dev5Button2", 1},
                                                               {"Dev6Chord1", 8}}) {
    auto* const each = find<AssignmentMenu>(("outBtnMenu" + name).c_str());
    models.insert(each->model());
    EXPECT_EQ(each->property("tag").toInt(), button) << name;
    const int edit = each->findData(kEditItemTag);
    ASSERT_GE(edit, 0) << name;
    EXPECT_EQ(each->itemData(edit, Qt::UserRole + 1).toInt(), button) << name;
  }
  EXPECT_EQ(models.size(), 7U);
}

TEST_F(ButtonMenusTest, AnActionWithAnItemIsShownByIt) {
  openWith({{1, withModifiers(3, 0)}});
  EXPECT_EQ(menu("Button2")->selectedTag(), 3);
  EXPECT_FALSE(menu("Button2")->hasTag(kExtraItemTag));
}

TEST_F(ButtonMenusTest, ChoosingACommandStoresItsDefaultsAtOnce) {
  openWith({{1, withText(70, "~/notes")}});
  choose(menu("Button2"), 4);
  EXPECT_EQ(stored(1).keys(), (std::vector<std::string>{"cmd", "mod"}));
  EXPECT_EQ(stored(1).int32For("cmd"), 4);
  EXPECT_FALSE(menu("Button2")->hasTag(kExtraItemTag));
  EXPECT_THAT(log, ElementsAre("VXUp"));
}

TEST_F(ButtonMenusTest, ChoosingTheShownItemAgainLeavesItsDefaults) {
  openWith({{1, withModifiers(3, 0)}});
  choose(menu("Button2"), 3);
  EXPECT_TRUE(plist::equal(stored(1), withModifiers(3, 0)));
}

TEST_F(ButtonMenusTest, ScrollingShownByItsPlainItemComesBackWithOneStep) {
  auto scroll = action(21);
  scroll.set("cnt", 3);
  openWith({{8, scroll}});
  AssignmentMenu other;
  other.addTaggedItem(21, "Scroll Down");
  gVeltrixController->vtxUpdateMenu(&other, 8);
  EXPECT_EQ(other.selectedTag(), 21);
  gVeltrixController->vtxGetButtonAssignment(scroll, &other);
  EXPECT_EQ(scroll.int32For("cnt"), 1);
}

TEST_F(ButtonMenusTest, ButtonZeroIsSetBackToTheClickWhenNothingElseIsOne) {
  auto keystroke = withModifiers(10, 0x0100);
  keystroke.set("key", 0);
  openWith({{0, keystroke}});
  EXPECT_FALSE(menu("Button1")->isEnabled());
  EXPECT_EQ(shown("Button1").rfind('+') != std::string::npos, true) << shown("Button1");
  pane->willUnselect();
  EXPECT_EQ(stored(0).int32For("cmd"), 1);
  pane->didSelect();
}

TEST_F(ButtonMenusTest, TheOnlyClickIsLockedUntilThereIsASecond) {
  openWith({});
  EXPECT_FALSE(menu("Button1")->isEnabled());
  EXPECT_FALSE(menu("Button1")->toolTip().isEmpty());
  choose(menu("Button3"), 1);
  EXPECT_TRUE(menu("Button1")->toolTip().isEmpty());
  EXPECT_TRUE(menu("Button1")->isEnabled());
  EXPECT_TRUE(menu("Button3")->isEnabled());
  choose(menu("Button1"), 2);
  EXPECT_FALSE(menu("Button3")->isEnabled());
  EXPECT_EQ(stored(0).int32For("cmd"), 2);
}

TEST_F(ButtonMenusTest, AClickOnAChordIsFree) {
  openWith({{8, withModifiers(1, 0)}});
  EXPECT_TRUE(menu("Chord1")->isEnabled());
  EXPECT_FALSE(menu("Button1")->isEnabled());
}

TEST_F(ButtonMenusTest, AClickWithModifiersNamesThemBeforeTheClick) {
  openWith({{1, withModifiers(2, 0x1100)}});
  EXPECT_EQ(menu("Button2")->selectedTag(), kExtraItemTag);
  const std::string title = shown("Button2");
  EXPECT_NE(title.find('+'), std::string::npos) << title;
  const int plain = menu("Button2")->findData(2);
  EXPECT_TRUE(title.ends_with("+" + menu("Button2")->itemText(plain).toStdString())) << title;
}

TEST_F(ButtonMenusTest, AKeystrokeIsShownByWhatItTypes) {
  auto keystroke = withModifiers(10, 0);
  keystroke.set("key", 122);
  openWith({{1, keystroke}});
  EXPECT_EQ(shown("Button2"), "Type F1");
}

TEST_F(ButtonMenusTest, ItemsUrlsAndApplicationsShowTheirText) {
  openWith({{1, withText(70, "~/papers/notes.txt")},
            {2, withText(72, "http://www.example.org/")},
            {3, withText(71, "Editor")}});
  EXPECT_EQ(shown("Button2"), "notes.txt");
  EXPECT_EQ(shown("Button3"), "example.org");
  EXPECT_EQ(shown("Button4"), "Editor");
}

TEST_F(ButtonMenusTest, ALabelIsShownEvenWhereAnItemWouldDo) {
  auto labelled = withModifiers(3, 0);
  labelled.set("label", "My middle");
  openWith({{1, labelled}});
  EXPECT_EQ(menu("Button2")->selectedTag(), kExtraItemTag);
  EXPECT_EQ(shown("Button2"), "My middle");
}

TEST_F(ButtonMenusTest, ASavedExtraItemLeavesTheActionAlone) {
  auto labelled = withText(73, "echo one\necho two");
  labelled.set("label", "Two lines");
  labelled.set("other", 12);
  openWith({{1, labelled}});
  choose(menu("Button3"), 4);
  EXPECT_TRUE(plist::equal(stored(1), labelled));
}

TEST_F(ButtonMenusTest, AnUnknownCommandShowsADash) {
  openWith({{1, action(9999)}});
  EXPECT_EQ(shown("Button2"), "-");
}

TEST_F(ButtonMenusTest, AButtonWithoutAnActionIsShownAsNoActionAndStaysWithout) {
  openWith({});
  plist::Dictionary document = userFile();
  document.arrayFor("devices").at(0).asDictionary().dictionaryFor("buttons").remove("01");
  pane.reset();
  writeUserFile(document);
  openPane();
  EXPECT_EQ(menu("Button2")->selectedTag(), 0);
  choose(menu("Button3"), 4);
  EXPECT_EQ(stored(2).int32For("cmd"), 4);
  EXPECT_TRUE(stored(1).isNull());
}

TEST_F(ButtonMenusTest, TheEditItemOpensTheEditorAndCancelStoresNothing) {
  openWith({{1, withModifiers(3, 0)}});
  bool ran = false;
  whenDialogRuns([&](QDialog* dialog) {
    ran = true;
    QTest::keyClick(dialog, Qt::Key_Escape);
  });
  choose(menu("Button2"), kEditItemTag);
  EXPECT_TRUE(ran);
  EXPECT_EQ(menu("Button2")->selectedTag(), 3);
  EXPECT_THAT(log, IsEmpty());
}

TEST_F(ButtonMenusTest, TheEditorsOkStoresTheAction) {
  openWith({{1, withModifiers(3, 0)}});
  whenDialogRuns([&](QDialog* dialog) {
    QTest::keyClicks(dialog->findChild<QWidget*>("outMainFieldLabel"), "Mine");
    QTest::keyClick(dialog->findChild<QWidget*>("outMainFieldLabel"), Qt::Key_Return);
  });
  choose(menu("Button2"), kEditItemTag);
  EXPECT_EQ(stored(1).stringFor("label"), "Mine");
  EXPECT_EQ(shown("Button2"), "Mine");
  EXPECT_THAT(log, ElementsAre("VXUp"));
}

TEST_F(ButtonMenusTest, WithoutADeviceNoMenuIsRead) {
  openWith({{1, withModifiers(3, 0)}});
  plugAndPoll({});
  pane->sysPrefDidResignActive();
  EXPECT_TRUE(plist::equal(stored(1), withModifiers(3, 0)));
}

TEST_F(ButtonMenusTest, MenusOfOtherModelsAreLeftAlone) {
  openWith({});
  EXPECT_EQ(find<AssignmentMenu>("outBtnMenuDev2Button1")->selectedTag(),
            find<AssignmentMenu>("outBtnMenuDev2Button1")->tagAt(0));
  EXPECT_TRUE(find<AssignmentMenu>("outBtnMenuDev2Button1")->isEnabled());
}

TEST_F(ButtonMenusTest, EveryMenuStoresTheActionOfItsButton) {
  struct Model {
    Plugged device;
    std::size_t entry;  // among those of the product
    std::vector<std::string> menus;
  };
  const std::vector<std::string> four = {"Button1", "Button2", "Button3", "Button4"};
  const std::vector<std::string> six = {"Button1", "Button2", "Button3", "Button4", "Chord1", "Chord2"};
  const std::vector<std::string> three = {"Button1", "Button2", "Chord1"};
  const Model models[] = {{{0x1020, 0x0100}, 0, six},   {{0x2041, 0x0107}, 1, six},
                          {{0x2041, 0x0106}, 0, four},  {{0x1022, 0x0100}, 0, three},
                          {{0x2048, 0x0100}, 0, three}, {{0x8002, 0x0100}, 0, three}};
  // Only clicks, so that each may be given up.
  plist::Dictionary document = makeUsualDocument();
  for (const plist::Value& entry : document.arrayFor("devices").items()) {
    for (const std::int32_t button : {0, 1, 2, 3, 8, 9}) {
      entry.asDictionary().dictionaryFor("buttons").set(buttonKey(button), withModifiers(1, 0));
    }
  }
  writeUserFile(document);
  openPane();
  int group = 0;
  for (const Model& model : models) {
    plugAndPoll({});
    plugAndPoll({model.device});
    const std::string prefix = "outBtnMenuDev" + std::to_string(++group);
    for (const std::string& name : model.menus) {
      SCOPED_TRACE(prefix + name);
      const std::int32_t button = name.back() - (name.starts_with("Chord") ? '1' - 8 : '1');
      const auto storedCommand = [&] {
        const plist::Dictionary entry = userEntry(model.device.productId, model.entry);
        return entry.dictionaryFor("buttons").dictionaryFor(buttonKey(button)).int32For("cmd");
      };
      auto* const menu = find<AssignmentMenu>((prefix + name).c_str());
      choose(menu, 4);
      EXPECT_EQ(storedCommand(), 4);
      choose(menu, 1);
      EXPECT_EQ(storedCommand(), 1);
    }
  }
}

}  // namespace
}  // namespace veltrix::testing
