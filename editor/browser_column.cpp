#include "editor/browser_column.h"

#include <QKeyEvent>
#include <QPainter>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QStringListModel>
#include <QStyledItemDelegate>
#include <algorithm>

namespace veltrix {
namespace {

constexpr int kRows = 12;           // that a column would like to show: all categories
constexpr double kRowHeight = 1.4;  // in lines of text: large targets are kind to aching hands
constexpr int kLeastRows = 4;
constexpr int kLeastWidth = 14;  // in lines of text
constexpr int kGreatestWidth = 24;
constexpr double kQuietShare = 0.35;  // of the highlight in a selection without the focus

QColor mixed(const QColor& a, const QColor& b, double share) {
  const auto mix = [share](double x, double y) { return static_cast<float>(x * share + y * (1 - share)); };
  return QColor::fromRgbF(mix(a.redF(), b.redF()), mix(a.greenF(), b.greenF()), mix(a.blueF(), b.blueF()));
}

int rowHeight(const QFontMetrics& metrics) {
  return static_cast<int>(metrics.height() * kRowHeight);
}

// Both columns have a selection; only the one where keys go shows it in full colour.
class RowDelegate : public QStyledItemDelegate {
 public:
  RowDelegate(bool branches, QWidget* view) : QStyledItemDelegate(view), fBranches(branches), fView(view) {}

  void paint(QPainter* painter, const QStyleOptionViewItem& item, const QModelIndex& index) const override {
    QStyleOptionViewItem option = item;
    if (!fView->hasFocus()) {
      for (const auto group : {QPalette::Active, QPalette::Inactive}) {
        option.palette.setColor(group, QPalette::Highlight,
                                mixed(fView->palette().color(QPalette::Active, QPalette::Highlight),
                                      fView->palette().color(QPalette::Base), kQuietShare));
        option.palette.setColor(group, QPalette::HighlightedText, fView->palette().color(QPalette::Text));
      }
    }
    if (!fBranches) {
      QStyledItemDelegate::paint(painter, option, index);
      return;
    }
    // The title ends before the arrow, the background goes on below it.
    QStyleOptionViewItem background = option;
    initStyleOption(&background, index);
    background.text.clear();
    fView->style()->drawControl(QStyle::CE_ItemViewItem, &background, painter, fView);
    const int room = arrowSide(option);
    option.rect.adjust(option.direction == Qt::RightToLeft ? room : 0, 0,
                       option.direction == Qt::RightToLeft ? 0 : -room, 0);
    QStyledItemDelegate::paint(painter, option, index);
    paintArrow(painter, background);
  }

  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    const QSize size = QStyledItemDelegate::sizeHint(option, index);
    const int line = option.fontMetrics.height();
    return {size.width() + (fBranches ? arrowSide(option) : 0) + line / 2,
            std::max(size.height(), rowHeight(option.fontMetrics))};
  }

 private:
  static int arrowSide(const QStyleOptionViewItem& item) { return item.fontMetrics.height() * 2 / 3; }

  void paintArrow(QPainter* painter, const QStyleOptionViewItem& item) const {
    const int side = arrowSide(item);
    const bool mirrored = item.direction == Qt::RightToLeft;
    QStyleOption arrow;
    arrow.palette = item.palette;
    arrow.state = item.state;
    const bool selected = (item.state & QStyle::State_Selected) != 0;
    const QColor color = item.palette.color(selected ? QPalette::HighlightedText : QPalette::Text);
    for (const auto role : {QPalette::WindowText, QPalette::ButtonText, QPalette::Text}) {
      arrow.palette.setColor(role, color);
    }
    arrow.rect = QStyle::alignedRect(item.direction, Qt::AlignRight | Qt::AlignVCenter, QSize(side, side),
                                     item.rect.adjusted(2, 0, -2, 0));
    fView->style()->drawPrimitive(mirrored ? QStyle::PE_IndicatorArrowLeft : QStyle::PE_IndicatorArrowRight,
                                  &arrow, painter, fView);
  }

  bool fBranches;
  QWidget* fView;
};

}  // namespace

BrowserColumn::BrowserColumn(bool branches, QWidget* parent)
    : QListView(parent), fTitles(new QStringListModel(this)) {
  setModel(fTitles);
  setItemDelegate(new RowDelegate(branches, this));
  setEditTriggers(NoEditTriggers);
  setSelectionMode(SingleSelection);
  setUniformItemSizes(true);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setTextElideMode(Qt::ElideRight);
  connect(selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] {
    if (!fQuiet) {
      fToldAtPress = true;
      emit chosen();
    }
  });
  connect(this, &QListView::clicked, this, [this] {
    if (!fToldAtPress) {
      emit chosen();
    }
  });
}

int BrowserColumn::rowCount() const {
  return fTitles->rowCount();
}

QString BrowserColumn::title(int row) const {
  return fTitles->stringList().value(row);
}

int BrowserColumn::selectedRow() const {
  const QModelIndexList selected = selectionModel()->selectedRows();
  return selected.isEmpty() ? -1 : selected.first().row();
}

void BrowserColumn::setTitles(const QStringList& titles) {
  const QScopedValueRollback quiet(fQuiet, true);
  fTitles->setStringList(titles);
}

void BrowserColumn::setTypicalTitles(const QStringList& titles) {
  fTypicalWidth = 0;
  for (const QString& title : titles) {
    fTypicalWidth = std::max(fTypicalWidth, fontMetrics().horizontalAdvance(title));
  }
  updateGeometry();
}

void BrowserColumn::renameRows(const QStringList& titles) {
  const int rows = std::min(rowCount(), static_cast<int>(titles.size()));
  for (int row = 0; row < rows; ++row) {
    if (title(row) != titles[row]) {
      fTitles->setData(fTitles->index(row), titles[row]);
    }
  }
}

void BrowserColumn::selectRow(int row) {
  const QModelIndex index = fTitles->index(row);
  if (index.isValid()) {
    const QScopedValueRollback quiet(fQuiet, true);
    setCurrentIndex(index);
    showSelection();
  }
}

void BrowserColumn::showSelection() {
  scrollTo(currentIndex(), EnsureVisible);
}

// Before the first layout nothing can be scrolled to its place.
void BrowserColumn::showEvent(QShowEvent* event) {
  QListView::showEvent(event);
  scrollTo(currentIndex(), PositionAtCenter);
}

// Nothing takes a selection away without another in its place.
QItemSelectionModel::SelectionFlags BrowserColumn::selectionCommand(const QModelIndex& index,
                                                                    const QEvent* event) const {
  const auto command = QListView::selectionCommand(index, event);
  const auto destructive = QItemSelectionModel::Deselect | QItemSelectionModel::Toggle;
  if ((command & destructive) != 0 || !index.isValid()) {
    return index.isValid() ? QItemSelectionModel::ClearAndSelect : QItemSelectionModel::NoUpdate;
  }
  return command;
}

void BrowserColumn::mousePressEvent(QMouseEvent* event) {
  fToldAtPress = false;
  QListView::mousePressEvent(event);
}

void BrowserColumn::keyPressEvent(QKeyEvent* event) {
  const bool plain = (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
  if (plain && (event->key() == Qt::Key_Left || event->key() == Qt::Key_Right)) {
    emit left((event->key() == Qt::Key_Right) == isLeftToRight() ? 1 : -1);
    return;
  }
  QListView::keyPressEvent(event);
}

QSize BrowserColumn::sizeHint() const {
  const int line = fontMetrics().height();
  const int titles = fTypicalWidth > 0 ? fTypicalWidth + line : sizeHintForColumn(0);
  const int width = titles + verticalScrollBar()->sizeHint().width() + 2 * frameWidth();
  return {std::clamp(width, line * kLeastWidth, line * kGreatestWidth),
          rowHeight(fontMetrics()) * kRows + 2 * frameWidth()};
}

QSize BrowserColumn::minimumSizeHint() const {
  return {fontMetrics().height() * kLeastWidth / 2, rowHeight(fontMetrics()) * kLeastRows};
}

}  // namespace veltrix
