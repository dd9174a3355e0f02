#include "util/hyperlink_button.h"

#include <QKeyEvent>
#include <QStyleOptionFocusRect>
#include <QStylePainter>

using veltrix::HyperlinkText;

namespace {

constexpr int kMargin = 3;  // room for the focus frame around the text

// The page of a tab is brighter than its window in some styles, so that a color has to do for both.
QColor readableInWindow(const QPalette& palette, const QColor& color) {
  return veltrix::readableOn(palette.color(QPalette::Window),
                             veltrix::readableOn(palette.color(QPalette::Light), color));
}

QFont fontOf(const HyperlinkText& title) {
  QFont font = title.font;
  font.setUnderline(title.underline == QTextCharFormat::SingleUnderline);
  return font;
}

}  // namespace

VeltrixHyperlinkButton::VeltrixHyperlinkButton(QWidget* parent) : QPushButton(parent) {
  setCursor(Qt::PointingHandCursor);
  setFlat(true);
  setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
}

QSize VeltrixHyperlinkButton::sizeHint() const {
  const HyperlinkText title = attributedTitle();
  return QFontMetrics(fontOf(title), this).size(Qt::TextSingleLine, title.text) +
         QSize(2 * kMargin, 2 * kMargin);
}

void VeltrixHyperlinkButton::paintEvent(QPaintEvent* /*event*/) {
  const HyperlinkText title = isDown() ? attributedAlternateTitle() : attributedTitle();
  QStylePainter painter(this);
  painter.setFont(fontOf(title));
  painter.setPen(isEnabled() ? readableInWindow(palette(), title.color)
                             : palette().color(QPalette::Disabled, QPalette::WindowText));
  painter.drawText(rect(), Qt::AlignCenter | Qt::TextSingleLine, title.text);
  if (hasFocus()) {
    QStyleOptionFocusRect frame;
    frame.initFrom(this);
    frame.backgroundColor = palette().color(QPalette::Window);
    painter.drawPrimitive(QStyle::PE_FrameFocusRect, frame);
  }
}

// Space is the base's own; Return would press only the default button of a dialog.
void VeltrixHyperlinkButton::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    if (!event->isAutoRepeat()) {
      click();
    }
    return;
  }
  QPushButton::keyPressEvent(event);
}
