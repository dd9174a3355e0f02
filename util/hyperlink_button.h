#pragma once

#include <QPushButton>

#include "util/hyperlink_text.h"

// A button whose title looks like a link, blue, and red while it is pressed. Space and Return press it. It
// opens nothing by itself: whoever makes it connects its signals.
class VeltrixHyperlinkButton : public QPushButton {
  Q_OBJECT

 public:
  explicit VeltrixHyperlinkButton(QWidget* parent = nullptr);

  // The button's text as it is shown, and as it is shown while pressed.
  veltrix::HyperlinkText attributedTitle() const { return veltrix::makeHyperlink(text(), false); }
  veltrix::HyperlinkText attributedAlternateTitle() const { return veltrix::makeHyperlink(text(), true); }

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
};
