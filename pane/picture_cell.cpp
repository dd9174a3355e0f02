#include "pane/picture_cell.h"

#include <QEvent>
#include <QLabel>
#include <QPainter>
#include <QPainterPath>
#include <QVBoxLayout>

#include "widgets/picture_view.h"

namespace veltrix {
namespace {

constexpr qreal kCornerRadius = 5.0;
constexpr qreal kCheckedTint = 0.22;
constexpr qreal kHoverTint = 0.08;

QColor faded(QColor color, qreal alpha) {
  color.setAlphaF(static_cast<float>(alpha));
  return color;
}

}  // namespace

PictureCell::PictureCell(QWidget* parent)
    : QAbstractButton(parent), fPicture(new PictureView(this)), fCaption(new QLabel(this)) {
  setCheckable(true);
  setFocusPolicy(Qt::StrongFocus);
  setAttribute(Qt::WA_Hover);
  setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(fPicture);
  layout->addWidget(fCaption);
  fPicture->setAttribute(Qt::WA_TransparentForMouseEvents);
  fCaption->setAttribute(Qt::WA_TransparentForMouseEvents);
  fCaption->setTextFormat(Qt::PlainText);
  fCaption->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
  fCaption->setWordWrap(true);
  setPictureLines(fPictureLines);
}

QString PictureCell::picture() const {
  return fPicture->picture();
}

void PictureCell::setPicture(const QString& name) {
  fPicture->setPicture(name);
}

void PictureCell::setCaption(const QString& caption) {
  setText(caption);
  fCaption->setText(caption);
}

void PictureCell::setPictureLines(int lines) {
  fPictureLines = lines;
  const int height = fontMetrics().height() * lines;
  fPicture->setMinimumHeight(height);
  fPicture->setMaximumHeight(height);
}

void PictureCell::changeEvent(QEvent* event) {
  if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
    setPictureLines(fPictureLines);
  }
  QAbstractButton::changeEvent(event);
}

void PictureCell::paintEvent(QPaintEvent* /*event*/) {
  const qreal tint = isChecked() ? kCheckedTint : (isEnabled() && underMouse() ? kHoverTint : 0.0);
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QColor accent = palette().color(QPalette::Active, QPalette::Highlight);
  QPainterPath outline;
  outline.addRoundedRect(QRectF(rect()).adjusted(1.0, 1.0, -1.0, -1.0), kCornerRadius, kCornerRadius);
  if (tint > 0.0) {
    painter.fillPath(outline, faded(accent, tint));
  }
  if (isChecked()) {
    painter.setPen(accent);
    painter.drawPath(outline);
  }
  if (hasFocus()) {
    painter.setPen(QPen(accent, 2.0));
    painter.drawPath(outline);
  }
}

}  // namespace veltrix
