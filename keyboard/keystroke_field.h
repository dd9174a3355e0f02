#pragma once

#include <QLineEdit>

namespace veltrix {

// Shows a keystroke and records another while it has the focus. The text cannot be edited as text.
class KeystrokeField : public QLineEdit {
  Q_OBJECT

 public:
  explicit KeystrokeField(QWidget* parent = nullptr);
};

}  // namespace veltrix
