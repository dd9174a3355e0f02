#include "editor/browser_column.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>

#include "tests/support/widget_pixels.h"

namespace veltrix {
namespace {

class BrowserColumnTest : public ::testing::Test {
 protected:
  BrowserColumnTest() : fColumn(true), fChosen(&fColumn, &BrowserColumn::chosen) {
    fColumn.setTitles({"Apple", "Banana", "Cherry", "Blueberry"});
    fColumn.resize(200, 200);
    show();
  }

  void show() {
    fColumn.show();
    QApplication::setActiveWindow(&fColumn);
    fColumn.setFocus();
    QCoreApplication::processEvents();
  }

  void click(int row, Qt::KeyboardModifiers modifiers = {}) {
    QTest::mouseClick(fColumn.viewport(), Qt::LeftButton, modifiers,
                      fColumn.visualRect(fColumn.model()->index(row, 0)).center());
  }

  BrowserColumn fColumn;
  QSignalSpy fChosen;
};

TEST_F(BrowserColumnTest, SelectsNothingByItself) {
  EXPECT_EQ(fColumn.selectedRow(), -1);
  EXPECT_TRUE(fChosen.isEmpty());
}

TEST_F(BrowserColumnTest, TellsAboutAClickedRow) {
  click(2);
  EXPECT_EQ(fColumn.selectedRow(), 2);
  EXPECT_EQ(fChosen.count(), 1);
}

TEST_F(BrowserColumnTest, TellsAboutAClickOnTheSelectedRow) {
  fColumn.selectRow(2);
  click(2);
  EXPECT_EQ(fChosen.count(), 1);
}

TEST_F(BrowserColumnTest, TellsNothingAboutARowThatTheProgramSelects) {
  fColumn.selectRow(1);
  EXPECT_EQ(fColumn.selectedRow(), 1);
  fColumn.setTitles({"Other"});
  EXPECT_EQ(fColumn.selectedRow(), -1);
  EXPECT_TRUE(fChosen.isEmpty());
}

TEST_F(BrowserColumnTest, KeepsTheSelectionWhenARowDoesNotExist) {
  fColumn.selectRow(1);
  fColumn.selectRow(9);
  fColumn.selectRow(-1);
  EXPECT_EQ(fColumn.selectedRow(), 1);
}

TEST_F(BrowserColumnTest, KeepsTheSelectionAtControlClicksAndClicksBelowTheRows) {
  fColumn.selectRow(1);
  click(1, Qt::ControlModifier);
  EXPECT_EQ(fColumn.selectedRow(), 1);
  QTest::mouseClick(fColumn.viewport(), Qt::LeftButton, {}, QPoint(20, fColumn.viewport()->height() - 3));
  EXPECT_EQ(fColumn.selectedRow(), 1);
}

TEST_F(BrowserColumnTest, MovesWithTheArrowKeys) {
  fColumn.selectRow(1);
  QTest::keyClick(&fColumn, Qt::Key_Down);
  EXPECT_EQ(fColumn.selectedRow(), 2);
  QTest::keyClick(&fColumn, Qt::Key_Home);
  EXPECT_EQ(fColumn.selectedRow(), 0);
  EXPECT_EQ(fChosen.count(), 2);
}

TEST_F(BrowserColumnTest, JumpsToTheTypedLetters) {
  fColumn.selectRow(0);
  QTest::keyClicks(&fColumn, "bl");
  EXPECT_EQ(fColumn.selectedRow(), 3);
  EXPECT_FALSE(fChosen.isEmpty());
}

TEST_F(BrowserColumnTest, SaysWhichWayAnArrowKeyLeads) {
  QSignalSpy left(&fColumn, &BrowserColumn::left);
  QTest::keyClick(&fColumn, Qt::Key_Right);
  QTest::keyClick(&fColumn, Qt::Key_Left);
  fColumn.setLayoutDirection(Qt::RightToLeft);
  QTest::keyClick(&fColumn, Qt::Key_Left);
  ASSERT_EQ(left.count(), 3);
  EXPECT_EQ(left[0][0], 1);
  EXPECT_EQ(left[1][0], -1);
  EXPECT_EQ(left[2][0], 1);
}

TEST_F(BrowserColumnTest, RenamesRowsWithoutLosingTheSelection) {
  fColumn.selectRow(1);
  fColumn.renameRows({"Apple", "Plantain", "Cherry", "Blueberry"});
  EXPECT_EQ(fColumn.title(1), "Plantain");
  EXPECT_EQ(fColumn.selectedRow(), 1);
  EXPECT_TRUE(fChosen.isEmpty());
}

TEST_F(BrowserColumnTest, BringsTheSelectedRowIntoViewWhenItIsShown) {
  QStringList titles;
  for (int i = 0; i < 100; ++i) {
    titles << QString::number(i);
  }
  fColumn.hide();
  fColumn.setTitles(titles);
  fColumn.selectRow(90);
  show();
  EXPECT_TRUE(fColumn.viewport()->rect().contains(fColumn.visualRect(fColumn.currentIndex())));
  fColumn.selectRow(3);
  EXPECT_TRUE(fColumn.viewport()->rect().contains(fColumn.visualRect(fColumn.currentIndex())));
}

TEST_F(BrowserColumnTest, ShowsTheSelectionInFullColourOnlyWithTheFocus) {
  fColumn.selectRow(1);
  const auto rowColor = [this] {
    const QRect row = fColumn.visualRect(fColumn.currentIndex());
    return fColumn.viewport()->grab().toImage().pixelColor(row.right() - 30, row.center().y());
  };
  const QColor focused = rowColor();
  fColumn.clearFocus();
  const QColor quiet = rowColor();
  const QColor highlight = fColumn.palette().color(QPalette::Active, QPalette::Highlight);
  EXPECT_LT(test::contrast(focused, highlight), 1.05);
  EXPECT_GT(test::contrast(quiet, highlight), 1.5);
  EXPECT_GT(test::contrast(quiet, fColumn.palette().color(QPalette::Base)), 1.2);
}

}  // namespace
}  // namespace veltrix
