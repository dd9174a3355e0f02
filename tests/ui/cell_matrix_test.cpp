#include "pane/cell_matrix.h"

#include <gtest/gtest.h>

#include <QHBoxLayout>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>
#include <array>

namespace veltrix {
namespace {

class CellMatrixTest : public ::testing::Test {
 protected:
  CellMatrixTest() {
    auto* layout = new QHBoxLayout(&fMatrix);
    for (std::size_t i = 0; i < fCells.size(); ++i) {
      fCells.at(i) = new QToolButton(&fMatrix);
      fCells.at(i)->setCheckable(true);
      fCells.at(i)->setProperty("tag", static_cast<int>(100 + i));
      layout->addWidget(fCells.at(i));
    }
    fMatrix.adoptCells();
    fMatrix.show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&fMatrix));
  }

  CellMatrix fMatrix;
  std::array<QToolButton*, 3> fCells{};
};

TEST_F(CellMatrixTest, HasItsButtonsAsColumns) {
  ASSERT_EQ(fMatrix.columnCount(), 3);
  EXPECT_EQ(fMatrix.cell(2), fCells.at(2));
  EXPECT_EQ(fMatrix.cell(3), nullptr);
  EXPECT_EQ(fMatrix.cell(-1), nullptr);
}

TEST_F(CellMatrixTest, StartsWithNothingSelected) {
  EXPECT_EQ(fMatrix.selectedColumn(), -1);
  EXPECT_EQ(fMatrix.selectedTag(), 0);
}

TEST_F(CellMatrixTest, AClickSelectsOneCellAndSaysSo) {
  QSignalSpy chosen(&fMatrix, &CellMatrix::chosen);
  QTest::mouseClick(fCells.at(1), Qt::LeftButton);
  QTest::mouseClick(fCells.at(2), Qt::LeftButton);
  EXPECT_EQ(fMatrix.selectedColumn(), 2);
  EXPECT_EQ(fMatrix.selectedTag(), 102);
  EXPECT_FALSE(fCells.at(1)->isChecked());
  EXPECT_EQ(chosen.count(), 2);
}

TEST_F(CellMatrixTest, ArrowKeysChooseToo) {
  fMatrix.selectColumn(0);
  fCells.at(0)->setFocus();
  QSignalSpy chosen(&fMatrix, &CellMatrix::chosen);
  QTest::keyClick(fCells.at(0), Qt::Key_Right);
  EXPECT_EQ(fMatrix.selectedColumn(), 1);
  EXPECT_EQ(chosen.count(), 1);
}

TEST_F(CellMatrixTest, AnUnknownTagLeavesTheSelection) {
  QSignalSpy chosen(&fMatrix, &CellMatrix::chosen);
  fMatrix.selectCellWithTag(101);
  fMatrix.selectCellWithTag(7);
  fMatrix.selectCellWithTag(0);
  EXPECT_EQ(fMatrix.selectedColumn(), 1);
  EXPECT_EQ(chosen.count(), 0);
}

TEST_F(CellMatrixTest, ADisabledCellCanBeSelectedByTheProgramOnly) {
  fCells.at(2)->setEnabled(false);
  QTest::mouseClick(fCells.at(2), Qt::LeftButton);
  EXPECT_EQ(fMatrix.selectedColumn(), -1);
  fMatrix.selectCellWithTag(102);
  EXPECT_EQ(fMatrix.selectedColumn(), 2);
}

}  // namespace
}  // namespace veltrix
