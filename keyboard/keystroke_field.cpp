#include "keyboard/keystroke_field.h"

#include <QKeyEvent>

#include "keyboard/keystroke_application.h"
#include "keyboard/keystroke_event.h"

namespace veltrix {
namespace {

// Locks stay on after their release, so two taps of one are a way to use it and not a sign.
bool isTapKey(const QKeyEvent& event) {
  return isModifierKey(event) && event.key() != Qt::Key_CapsLock;
}

}  // namespace

const char* const KeystrokeField::kLeaveHint =
    QT_TR_NOOP("Press Shift twice to leave this field; all other keys are recorded.");

KeystrokeField::KeystrokeField(QWidget* parent) : QLineEdit(parent) {
  // An input method would keep dead keys and whatever else it composes to itself.
  setReadOnly(true);
  // The Menu key is a key like any other, and there is nothing to edit.
  setContextMenuPolicy(Qt::PreventContextMenu);
  setCursor(Qt::ArrowCursor);
  translate();
  if (auto* application = qobject_cast<KeystrokeApplication*>(QCoreApplication::instance())) {
    connect(application, &KeystrokeApplication::captureChanged, this, &KeystrokeField::updateGrab);
    connect(application, &KeystrokeApplication::keystrokeDiverted, this, [this] {
      fTap.interrupt();
      updateGrab();
    });
  }
}

void KeystrokeField::translate() {
  setPlaceholderText(tr("Press a key combination"));
  setAccessibleDescription(tr(kLeaveHint));
}

QVariant KeystrokeField::inputMethodQuery(Qt::InputMethodQuery query) const {
  return query == Qt::ImEnabled ? QVariant(false) : QLineEdit::inputMethodQuery(query);
}

void KeystrokeField::updateGrab() {
  if (hasFocus() && isVisible() && isActiveWindow() && KeystrokeApplication::isCapturing()) {
    fGrab.take(window()->windowHandle());
  } else {
    fGrab.giveBack();
  }
}

void KeystrokeField::changeEvent(QEvent* event) {
  QLineEdit::changeEvent(event);
  if (event->type() == QEvent::LanguageChange) {
    translate();
  } else if (event->type() == QEvent::ActivationChange || event->type() == QEvent::EnabledChange) {
    updateGrab();
  }
}

void KeystrokeField::focusInEvent(QFocusEvent* event) {
  QLineEdit::focusInEvent(event);
  deselect();
  fTap.interrupt();
  updateGrab();
}

void KeystrokeField::focusOutEvent(QFocusEvent* event) {
  QLineEdit::focusOutEvent(event);
  fGrab.giveBack();
}

void KeystrokeField::hideEvent(QHideEvent* event) {
  QLineEdit::hideEvent(event);
  fGrab.giveBack();
}

void KeystrokeField::mousePressEvent(QMouseEvent* event) {
  QLineEdit::mousePressEvent(event);
  fTap.interrupt();
  updateGrab();
}

void KeystrokeField::keyPressEvent(QKeyEvent* event) {
  if (isTapKey(*event) && !event->isAutoRepeat()) {
    fTap.press(event->key());
    updateGrab();
  } else if (!isTapKey(*event)) {
    fTap.interrupt();
  }
  QLineEdit::keyPressEvent(event);
}

void KeystrokeField::keyReleaseEvent(QKeyEvent* event) {
  QLineEdit::keyReleaseEvent(event);
  if (!isTapKey(*event)) {
    fTap.interrupt();
  } else if (!event->isAutoRepeat() && fTap.release(event->key()) && KeystrokeApplication::isCapturing()) {
    focusNextChild();
  }
}

}  // namespace veltrix
