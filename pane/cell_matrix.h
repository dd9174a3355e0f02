#pragma once

#include <QButtonGroup>
#include <QList>
#include <QWidget>

class QAbstractButton;

namespace veltrix {

// A row of buttons of which at most one is selected. Its cells are the buttons among its direct children, in
// the order in which they were made; column 0 is the first. A cell's tag is its dynamic property "tag".
class CellMatrix : public QWidget {
  Q_OBJECT

 public:
  explicit CellMatrix(QWidget* parent = nullptr);

  // To be called once, when all cells have been made.
  void adoptCells();

  int columnCount() const { return static_cast<int>(fCells.size()); }
  QAbstractButton* cell(int column) const;  // null when out of range

  int selectedColumn() const;       // -1 for none
  void selectColumn(int column);    // nothing when out of range
  void selectCellWithTag(int tag);  // nothing when no cell carries it
  int selectedTag() const;          // 0 when no cell is selected

 signals:
  // The user has chosen a cell; not sent for selections made by the program.
  void chosen();

 private:
  QButtonGroup fGroup;
  QList<QAbstractButton*> fCells;
};

}  // namespace veltrix
