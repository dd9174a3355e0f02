#include "tests/ui/model/sheet_hands.h"

#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QPushButton>
#include <QTest>
#include <array>

namespace veltrix::model {
namespace {

constexpr auto kKeys = std::to_array<Keys>({
    {"A", Qt::Key_A, Qt::NoModifier, 0, 0},
    {"Ctrl+Q", Qt::Key_Q, Qt::ControlModifier, 12, 0x1000},
    {"Meta+Q", Qt::Key_Q, Qt::MetaModifier, 12, 0x0100},
    {"Alt+F4", Qt::Key_F4, Qt::AltModifier, 118, 0x0800},
    {"Tab", Qt::Key_Tab, Qt::NoModifier, 48, 0},
    {"Escape", Qt::Key_Escape, Qt::NoModifier, 53, 0},
    {"Shift+F1", Qt::Key_F1, Qt::ShiftModifier, 122, 0x0200},
    {"Return", Qt::Key_Return, Qt::NoModifier, 36, 0},
});

template <typename Widget = QWidget>
Widget* child(QDialog* dialog, const char* name) {
  auto* const widget = dialog->findChild<Widget*>(name);
  if (widget == nullptr) {
    ADD_FAILURE() << "no widget " << name;
  }
  return widget;
}

void clickItem(QAbstractItemView* view, const QModelIndex& index) {
  view->scrollTo(index);
  QTest::mouseClick(view->viewport(), Qt::LeftButton, Qt::NoModifier, view->visualRect(index).center());
}

}  // namespace

const Keys& keysAt(int number) {
  return kKeys.at(static_cast<std::size_t>(number) % kKeys.size());
}

void clickRow(QDialog* dialog, const char* column, int row) {
  if (auto* const view = child<QAbstractItemView>(dialog, column)) {
    clickItem(view, view->model()->index(row, 0));
  }
}

void clickBoxOf(QDialog* dialog, const char* name) {
  if (auto* const box = child(dialog, name)) {
    QTest::mouseClick(box, Qt::LeftButton, Qt::NoModifier, QPoint(8, box->height() / 2));
  }
}

void chooseSpeedOf(QDialog* dialog, int amount) {
  if (auto* const menu = child<QComboBox>(dialog, "outActScrollMenuSpeed")) {
    menu->showPopup();
    clickItem(menu->view(), menu->model()->index(menu->findData(amount), 0));
  }
}

void pressKeysIn(QDialog* dialog, const Keys& keys) {
  if (auto* const field = child(dialog, "outActKeyFieldKeystroke")) {
    QTest::mouseClick(field, Qt::LeftButton);
    field->setFocus();
    QTest::keyClick(field, static_cast<Qt::Key>(keys.key), static_cast<Qt::KeyboardModifier>(keys.held));
  }
}

void typeOver(QDialog* dialog, const char* field, const std::string& text) {
  if (auto* const widget = child(dialog, field)) {
    widget->setFocus();
    QTest::keyClick(widget, Qt::Key_A, Qt::ControlModifier);
    if (text.empty()) {
      QTest::keyClick(widget, Qt::Key_Backspace);
    }
    for (const char character : text) {
      if (character == '\n') {
        QTest::keyClick(widget, Qt::Key_Return);
      } else {
        QTest::keyClick(widget, character);
      }
    }
  }
}

void moveSliderOf(QDialog* dialog, const char* slider, int step) {
  if (auto* const widget = child(dialog, slider)) {
    QTest::keyClick(widget, step > 0 ? Qt::Key_Right : Qt::Key_Left);
  }
}

void endDialog(QDialog* dialog, Ending ending, const char* field) {
  if (ending == Ending::kReturn || ending == Ending::kEscape) {
    if (auto* const widget = child(dialog, field)) {
      widget->setFocus();
      QTest::keyClick(widget, ending == Ending::kReturn ? Qt::Key_Return : Qt::Key_Escape);
    }
    return;
  }
  const auto* const buttons = dialog->findChild<QDialogButtonBox*>();
  auto* const button =
      buttons == nullptr
          ? nullptr
          : buttons->button(ending == Ending::kOkButton ? QDialogButtonBox::Ok : QDialogButtonBox::Cancel);
  if (button == nullptr) {
    ADD_FAILURE() << "no button to end the dialog";
    return;
  }
  QTest::mouseClick(button, Qt::LeftButton);
}

}  // namespace veltrix::model
