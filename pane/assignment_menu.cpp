#include "pane/assignment_menu.h"

#include <QAbstractItemView>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QStyle>
#include <QStyleOptionComboBox>
#include <QStylePainter>
#include <QWheelEvent>
#include <algorithm>

#include "actions/template_menu.h"

namespace veltrix {
namespace {

constexpr int kTagRole = Qt::UserRole;
constexpr int kNumberRole = Qt::UserRole + 1;
constexpr int kVisibleCharacters = 18;
constexpr int kVisibleItems = 30;
constexpr int kLongestTitle = 400;  // a script or a path of any length may be a title

QString oneLine(const QString& title) {
  QString line = title.left(kLongestTitle);
  for (QChar& character : line) {
    if (character.category() == QChar::Other_Control || character == QChar::LineSeparator ||
        character == QChar::ParagraphSeparator) {
      character = QLatin1Char(' ');
    }
  }
  return line;
}

}  // namespace

AssignmentMenu::AssignmentMenu(QWidget* parent) : QComboBox(parent) {
  setMaxVisibleItems(kVisibleItems);
  connect(this, &QComboBox::activated, this, &AssignmentMenu::takeChoice);
}

void AssignmentMenu::addTaggedItem(std::int32_t tag, const QString& title) {
  addItem(title, tag);
}

void AssignmentMenu::setRepresentedObject(std::int32_t tag, std::int32_t number) {
  const int index = findData(tag, kTagRole);
  if (index >= 0) {
    setItemData(index, number, kNumberRole);
  }
}

std::optional<std::int32_t> AssignmentMenu::tagAt(int index) const {
  const QVariant tag = itemData(index, kTagRole);
  return tag.isValid() ? std::optional<std::int32_t>(tag.toInt()) : std::nullopt;
}

bool AssignmentMenu::hasTag(std::int32_t tag) const {
  return findData(tag, kTagRole) >= 0;
}

bool AssignmentMenu::selectTag(std::int32_t tag) {
  const int index = findData(tag, kTagRole);
  if (index < 0) {
    return false;
  }
  setCurrentIndex(index);
  setToolTip(QString());
  return true;
}

std::optional<std::int32_t> AssignmentMenu::selectedTag() const {
  return tagAt(currentIndex());
}

bool AssignmentMenu::lastIsExtra() const {
  return tagAt(count() - 1) == kExtraItemTag;
}

void AssignmentMenu::showExtraItem(const QString& title) {
  if (!lastIsExtra()) {
    addTaggedItem(kExtraItemTag, QStringLiteral("x7y1z"));
  }
  const QString line = oneLine(title);
  setItemText(count() - 1, line);
  setCurrentIndex(count() - 1);
  setToolTip(QStringLiteral("<qt>%1</qt>").arg(line.toHtmlEscaped()));
}

void AssignmentMenu::removeExtraItem() {
  if (lastIsExtra()) {
    removeItem(count() - 1);
  }
}

void AssignmentMenu::takeChoice(int index) {
  if (tagAt(index) == kEditItemTag) {
    emit editChosen(itemData(index, kNumberRole).toInt());
  } else {
    emit chosen();
  }
}

// What the policy for a fixed number of characters would give. That policy makes the list of the open menu at
// once, for every menu of every model, which takes longer than all the rest of the menus.
QSize AssignmentMenu::sizeHint() const {
  QStyleOptionComboBox option;
  initStyleOption(&option);
  constexpr int kIconSpace = 4;
  constexpr int kSpaceAbove = 2;
  const int width =
      kVisibleCharacters * fontMetrics().horizontalAdvance(QLatin1Char('X')) + iconSize().width();
  const int height = std::max(fontMetrics().height(), iconSize().height());
  return style()->sizeFromContents(QStyle::CT_ComboBox, &option, {width + kIconSpace, height + kSpaceAbove},
                                   this);
}

// The text of a combo box is cut off where it ends; this one says that there is more.
void AssignmentMenu::initStyleOption(QStyleOptionComboBox* option) const {
  QComboBox::initStyleOption(option);
  const QRect field =
      style()->subControlRect(QStyle::CC_ComboBox, option, QStyle::SC_ComboBoxEditField, this);
  const int margin = fontMetrics().horizontalAdvance(QLatin1Char('x')) / 2;
  option->currentText =
      fontMetrics().elidedText(option->currentText, Qt::ElideRight, std::max(0, field.width() - margin));
}

void AssignmentMenu::paintEvent(QPaintEvent* /*event*/) {
  QStylePainter painter(this);
  QStyleOptionComboBox option;
  initStyleOption(&option);
  painter.drawComplexControl(QStyle::CC_ComboBox, option);
  painter.drawControl(QStyle::CE_ComboBoxLabel, option);
}

// Letters look for an item in the open menu, as they would in the closed one.
void AssignmentMenu::keyPressEvent(QKeyEvent* event) {
  const bool steps = event->key() == Qt::Key_Up || event->key() == Qt::Key_Down ||
                     event->key() == Qt::Key_PageUp || event->key() == Qt::Key_PageDown ||
                     event->key() == Qt::Key_Home || event->key() == Qt::Key_End ||
                     event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  const bool plain = (event->modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier)) == Qt::NoModifier;
  const bool types =
      plain && !event->text().isEmpty() && event->text().at(0).isPrint() && event->key() != Qt::Key_Space;
  if (!types && !(plain && steps)) {
    QComboBox::keyPressEvent(event);
    return;
  }
  showPopup();
  if (types) {
    QCoreApplication::sendEvent(view(), event);
  }
}

void AssignmentMenu::showPopup() {
  view()->setAccessibleName(accessibleName());
  QComboBox::showPopup();
}

// The page around the menu may be one that scrolls.
void AssignmentMenu::wheelEvent(QWheelEvent* event) {
  event->ignore();
}

}  // namespace veltrix
