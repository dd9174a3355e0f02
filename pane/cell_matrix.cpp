#include "pane/cell_matrix.h"

#include <QAbstractButton>
#include <QVariant>

namespace veltrix {

CellMatrix::CellMatrix(QWidget* parent) : QWidget(parent) {
  fGroup.setExclusive(true);
  connect(&fGroup, &QButtonGroup::buttonClicked, this, &CellMatrix::chosen);
}

void CellMatrix::adoptCells() {
  fCells = findChildren<QAbstractButton*>(QString(), Qt::FindDirectChildrenOnly);
  for (int column = 0; column < columnCount(); ++column) {
    fGroup.addButton(fCells.at(column), column);
  }
}

QAbstractButton* CellMatrix::cell(int column) const {
  return column >= 0 && column < columnCount() ? fCells.at(column) : nullptr;
}

int CellMatrix::selectedColumn() const {
  return fGroup.checkedId();
}

void CellMatrix::selectColumn(int column) {
  if (QAbstractButton* button = cell(column)) {
    button->setChecked(true);
  }
}

void CellMatrix::selectCellWithTag(int tag) {
  for (QAbstractButton* button : fCells) {
    const QVariant own = button->property("tag");
    if (own.isValid() && own.toInt() == tag) {
      button->setChecked(true);
      return;
    }
  }
}

int CellMatrix::selectedTag() const {
  const QAbstractButton* button = fGroup.checkedButton();
  return button != nullptr ? button->property("tag").toInt() : 0;
}

}  // namespace veltrix
