#include "pane/assignment_menu.h"

#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QSignalSpy>
#include <QTest>
#include <QWheelEvent>

#include "actions/template_menu.h"

namespace veltrix {
namespace {

class AssignmentMenuTest : public ::testing::Test {
 protected:
  AssignmentMenuTest() {
    menu.addTaggedItem(1, "Click");
    menu.addTaggedItem(2, "Right Click");
    menu.insertSeparator(menu.count());
    menu.addTaggedItem(0, "No Action");
    menu.addTaggedItem(kEditItemTag, "Edit…");
    menu.setRepresentedObject(kEditItemTag, 8);
    menu.show();
  }

  // A click on an item of the open menu.
  void choose(int index) {
    menu.showPopup();
    QAbstractItemView* const view = menu.view();
    const QRect item = view->visualRect(menu.model()->index(index, 0));
    QTest::mouseClick(view->viewport(), Qt::LeftButton, Qt::NoModifier, item.center());
  }

  AssignmentMenu menu;
  QSignalSpy chosen{&menu, &AssignmentMenu::chosen};
  QSignalSpy edit{&menu, &AssignmentMenu::editChosen};
};

TEST_F(AssignmentMenuTest, AChosenItemIsAnnounced) {
  choose(1);
  EXPECT_EQ(menu.selectedTag(), 2);
  EXPECT_EQ(chosen.count(), 1);
  EXPECT_EQ(edit.count(), 0);
}

TEST_F(AssignmentMenuTest, TheSelectedItemCanBeChosenAgain) {
  choose(1);
  choose(1);
  EXPECT_EQ(chosen.count(), 2);
}

TEST_F(AssignmentMenuTest, TheEditItemIsAnnouncedAloneWithItsNumber) {
  choose(4);
  EXPECT_EQ(chosen.count(), 0);
  ASSERT_EQ(edit.count(), 1);
  EXPECT_EQ(edit.at(0).at(0).toInt(), 8);
}

TEST_F(AssignmentMenuTest, ShowingAChoiceAnnouncesNothing) {
  menu.selectTag(2);
  menu.showExtraItem("Type A");
  menu.removeExtraItem();
  EXPECT_EQ(chosen.count(), 0);
  EXPECT_EQ(edit.count(), 0);
}

TEST_F(AssignmentMenuTest, ASeparatorCarriesNoTag) {
  EXPECT_FALSE(menu.tagAt(2).has_value());
  EXPECT_TRUE(menu.selectTag(0));
  EXPECT_EQ(menu.currentIndex(), 3);
}

TEST_F(AssignmentMenuTest, AnUnknownTagKeepsTheSelection) {
  menu.selectTag(2);
  EXPECT_FALSE(menu.selectTag(99));
  EXPECT_EQ(menu.selectedTag(), 2);
}

TEST_F(AssignmentMenuTest, ThereIsOneExtraItemAtMost) {
  menu.showExtraItem("Type A");
  menu.showExtraItem("Type B");
  EXPECT_EQ(menu.count(), 6);
  EXPECT_EQ(menu.selectedTag(), kExtraItemTag);
  EXPECT_EQ(menu.currentText(), "Type B");
  menu.removeExtraItem();
  menu.removeExtraItem();
  EXPECT_EQ(menu.count(), 5);
}

TEST_F(AssignmentMenuTest, ATitleStaysInOneLine) {
  menu.showExtraItem("echo one\necho\ttwo");
  EXPECT_EQ(menu.currentText(), "echo one echo two");
}

TEST_F(AssignmentMenuTest, AVeryLongTitleDoesNotWidenTheMenu) {
  const int width = menu.sizeHint().width();
  menu.showExtraItem(QString(100000, 'x'));
  EXPECT_EQ(menu.sizeHint().width(), width);
  EXPECT_LT(menu.currentText().size(), 1000);
}

TEST_F(AssignmentMenuTest, TheMenuHasRoomForAUsualTitle) {
  QComboBox usual;
  usual.setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  usual.setMinimumContentsLength(18);
  EXPECT_EQ(menu.sizeHint(), usual.sizeHint());
  EXPECT_EQ(menu.minimumSizeHint(), usual.minimumSizeHint());
}

// There are many menus, and a list takes longer to make than the menu.
TEST_F(AssignmentMenuTest, ThereIsNoListBeforeTheMenuIsOpened) {
  AssignmentMenu fresh;
  fresh.addTaggedItem(1, "Click");
  fresh.insertSeparator(fresh.count());
  fresh.showExtraItem("Type F1");
  fresh.adjustSize();
  EXPECT_EQ(fresh.findChild<QAbstractItemView*>(), nullptr);
}

TEST_F(AssignmentMenuTest, TheListThatOpensBearsTheNameOfTheMenu) {
  menu.setAccessibleName("Button 1");
  menu.showPopup();
  EXPECT_EQ(menu.view()->accessibleName(), "Button 1");
}

TEST_F(AssignmentMenuTest, TheToolTipShowsMarkupAsText) {
  menu.showExtraItem("<b>bold</b>");
  EXPECT_TRUE(menu.toolTip().contains("&lt;b&gt;"));
  menu.selectTag(1);
  EXPECT_TRUE(menu.toolTip().isEmpty());
}

TEST_F(AssignmentMenuTest, KeysThatWouldStepOpenTheMenu) {
  for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Up, Qt::Key_End, Qt::Key_Return, Qt::Key_Space}) {
    menu.selectTag(1);
    QTest::keyClick(&menu, key);
    EXPECT_TRUE(menu.view()->isVisible()) << key;
    EXPECT_EQ(menu.selectedTag(), 1) << key;
    menu.hidePopup();
  }
  EXPECT_EQ(chosen.count(), 0);
}

TEST_F(AssignmentMenuTest, ALetterOpensTheMenuAtAnItemThatBeginsWithIt) {
  QTest::keyClick(&menu, Qt::Key_R);
  ASSERT_TRUE(menu.view()->isVisible());
  EXPECT_EQ(menu.view()->currentIndex().row(), 1);
  EXPECT_EQ(menu.selectedTag(), 1);
  QTest::keyClick(menu.view(), Qt::Key_Return);
  EXPECT_EQ(menu.selectedTag(), 2);
  EXPECT_EQ(chosen.count(), 1);
}

TEST_F(AssignmentMenuTest, TheWheelChangesNothing) {
  menu.setFocus();
  QWheelEvent wheel({5, 5}, menu.mapToGlobal(QPointF(5, 5)), {}, {0, -120}, Qt::NoButton, Qt::NoModifier,
                    Qt::NoScrollPhase, false);
  QApplication::sendEvent(&menu, &wheel);
  EXPECT_FALSE(wheel.isAccepted());
  EXPECT_EQ(menu.selectedTag(), 1);
}

}  // namespace
}  // namespace veltrix
