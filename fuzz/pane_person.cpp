#include "fuzz/pane_person.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSlider>
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QPointer>
#include <QTabWidget>
#include <array>
#include <limits>

namespace {

constexpr int kMostDeeds = 12;  // in one dialog
constexpr int kLongText = 20000;

constexpr std::array kKeys = {
    Qt::Key_Down,      Qt::Key_Up,     Qt::Key_Left,     Qt::Key_Right,   Qt::Key_Home,      Qt::Key_End,
    Qt::Key_PageDown,  Qt::Key_PageUp, Qt::Key_Tab,      Qt::Key_Backtab, Qt::Key_Space,     Qt::Key_Return,
    Qt::Key_Backspace, Qt::Key_Delete, Qt::Key_F1,       Qt::Key_F35,     Qt::Key_Menu,      Qt::Key_unknown,
    Qt::Key_A,         Qt::Key_Escape, Qt::Key_CapsLock, Qt::Key_Meta,    Qt::Key_Dead_Acute};

constexpr std::array kNumbers = {
    0, 1, -1, 63, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()};

void pressKey(QWidget* widget, ByteSource* bytes) {
  constexpr unsigned kModifierShift = 25;  // Shift, Control, Alt and Meta in a row
  const auto key = kKeys[bytes->below(kKeys.size())];
  const unsigned choice = bytes->byte();
  const auto modifiers = Qt::KeyboardModifiers(QFlag(static_cast<int>((choice & 0xFU) << kModifierShift)));
  const QString text = key == Qt::Key_A ? QStringLiteral("a") : QString();
  const quint32 keycode = choice >> 1U;
  QPointer<QWidget> alive(widget);
  QKeyEvent press(QEvent::KeyPress, key, modifiers, keycode, 0, 0, text);
  QCoreApplication::sendEvent(widget, &press);
  if (alive != nullptr) {
    QKeyEvent release(QEvent::KeyRelease, key, modifiers, keycode, 0, 0, text);
    QCoreApplication::sendEvent(alive, &release);
  }
}

void clickAt(QWidget* widget, QPointF where) {
  QPointer<QWidget> alive(widget);
  QMouseEvent press(QEvent::MouseButtonPress, where, widget->mapToGlobal(where), Qt::LeftButton,
                    Qt::LeftButton, Qt::NoModifier);
  QCoreApplication::sendEvent(widget, &press);
  if (alive != nullptr) {
    QMouseEvent release(QEvent::MouseButtonRelease, where, widget->mapToGlobal(where), Qt::LeftButton,
                        Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(alive, &release);
  }
}

QString textFor(ByteSource* bytes) {
  if (bytes->below(8) == 0) {
    return QString(kLongText, QChar(bytes->byte()));
  }
  const std::string_view text = bytes->take(bytes->below(16));
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

void chooseItem(QComboBox* menu, ByteSource* bytes) {
  const int index = static_cast<int>(bytes->below(static_cast<std::size_t>(std::max(menu->count(), 1))));
  menu->setCurrentIndex(index);
  emit menu->activated(index);
}

}  // namespace

PanePerson::PanePerson(ByteSource* bytes) : fBytes(bytes) {
  qApp->installEventFilter(this);
}

PanePerson::~PanePerson() {
  qApp->removeEventFilter(this);
}

// The dialog is used from the loop that it runs.
bool PanePerson::eventFilter(QObject* watched, QEvent* event) {
  auto* dialog = event->type() == QEvent::Show ? qobject_cast<QDialog*>(watched) : nullptr;
  if (dialog != nullptr) {
    QMetaObject::invokeMethod(
        this, [this, alive = QPointer<QDialog>(dialog)] { useDialog(alive); }, Qt::QueuedConnection);
  }
  return false;
}

void PanePerson::useDialog(QDialog* dialog) {
  QPointer<QDialog> alive(dialog);
  for (int i = 0; i < kMostDeeds && alive != nullptr && alive->isVisible() && fBytes->below(16) != 15; ++i) {
    useSomething(alive);
    finishPopup();
  }
  if (alive != nullptr && alive->isVisible()) {
    alive->grab();
    alive->done(static_cast<int>(fBytes->below(2)));
  }
}

void PanePerson::finishPopup() {
  if (QPointer<QWidget> popup = QApplication::activePopupWidget()) {
    useSomething(popup);
    if (popup != nullptr) {
      popup->close();
    }
  }
}

void PanePerson::useSomething(QWidget* window) {
  QList<QWidget*> usable;
  for (QWidget* widget : window->findChildren<QWidget*>()) {
    if (widget->isVisibleTo(window) && widget->isEnabled() && widget->window() == window->window() &&
        (widget->focusPolicy() != Qt::NoFocus || qobject_cast<QTabBar*>(widget) != nullptr)) {
      usable.append(widget);
    }
  }
  if (!usable.isEmpty()) {
    use(usable.at(static_cast<qsizetype>(fBytes->below(static_cast<std::size_t>(usable.size())))));
  }
}

void PanePerson::use(QWidget* widget) {
  if (fBytes->below(3) == 0) {
    widget->setFocus();
    return pressKey(widget, fBytes);
  }
  if (auto* menu = qobject_cast<QComboBox*>(widget)) {
    return chooseItem(menu, fBytes);
  }
  if (auto* slider = qobject_cast<QAbstractSlider*>(widget)) {
    return slider->setValue(kNumbers[fBytes->below(kNumbers.size())]);
  }
  if (auto* field = qobject_cast<QLineEdit*>(widget)) {
    return field->insert(textFor(fBytes));
  }
  if (auto* field = qobject_cast<QPlainTextEdit*>(widget)) {
    return field->insertPlainText(textFor(fBytes));
  }
  if (auto* button = qobject_cast<QAbstractButton*>(widget)) {
    return button->click();
  }
  auto* view = qobject_cast<QAbstractItemView*>(widget);
  QWidget* const target = view != nullptr ? view->viewport() : widget;
  const auto fraction = [this] { return static_cast<double>(fBytes->byte()) / 256.0; };
  clickAt(target, QPointF(target->width() * fraction(), target->height() * fraction()));
}
