#pragma once

#include <QListView>
#include <QStringList>

class QStringListModel;

namespace veltrix {

// One column of titles of which one is selected, or none at first. Letters jump to a title.
class BrowserColumn : public QListView {
  Q_OBJECT

 public:
  // The rows of a column of branches have an arrow that leads to the next column.
  explicit BrowserColumn(bool branches, QWidget* parent = nullptr);

  int rowCount() const;
  QString title(int row) const;  // empty outside the rows
  int selectedRow() const;       // -1 for none

  // Nothing is selected afterwards; chosen() is not sent.
  void setTitles(const QStringList& titles);

  // The same rows under other names.
  void renameRows(const QStringList& titles);

  // The column wishes to be as wide as the widest of these titles, within reason; else as its own.
  void setTypicalTitles(const QStringList& titles);

  // Selects a row and brings it into view without sending chosen(); nothing outside the rows.
  void selectRow(int row);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 signals:
  // A person selected a row, or clicked the selected one; once for each click.
  void chosen();
  // A key that leads to the column before (-1) or after (1) this one.
  void left(int direction);

 protected:
  QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index,
                                                       const QEvent* event) const override;
  void mousePressEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  void showSelection();

  QStringListModel* fTitles;
  int fTypicalWidth = 0;
  bool fQuiet = false;        // the program selects
  bool fToldAtPress = false;  // the click that is going on has been told about
};

}  // namespace veltrix
