#pragma once

#include <QLineEdit>

#include "keyboard/keystroke_grab.h"
#include "keyboard/keystroke_modifier_tap.h"

namespace veltrix {

// Shows a keystroke and records another while it has the focus. The text cannot be edited as text.
//
// While it has the focus in the active window and its process records keystrokes
// (KeystrokeApplication::isCapturing), it also takes the keys that the desktop would act on. As Tab and
// Escape are recorded like all others, pressing one modifier key twice moves the focus on.
class KeystrokeField : public QLineEdit {
  Q_OBJECT

 public:
  // How to leave the field; a key of the string table, to be shown near the field. It is the field's
  // accessible description as well.
  static const char* const kLeaveHint;

  explicit KeystrokeField(QWidget* parent = nullptr);

  // Whether the keys of the desktop come here now.
  KeystrokeGrab::State grabState() const { return fGrab.state(); }

  // How long they do without a key press; half a minute unless it is set.
  void setIdleLimit(std::chrono::milliseconds limit) { fGrab.setIdleLimit(limit); }

  QVariant inputMethodQuery(Qt::InputMethodQuery query) const override;

 protected:
  void changeEvent(QEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void keyReleaseEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;

 private:
  void translate();
  void updateGrab();

  KeystrokeGrab fGrab;
  ModifierTap fTap;
};

}  // namespace veltrix
