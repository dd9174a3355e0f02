#include "keyboard/keystroke_field.h"

namespace veltrix {

KeystrokeField::KeystrokeField(QWidget* parent) : QLineEdit(parent) {
  setReadOnly(true);
}

}  // namespace veltrix
