#include "pane/acceleration_curve.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>

#include "driverlink/acceleration_gain.h"
#include "widgets/picture.h"

namespace veltrix {
namespace {

constexpr double kFastestBall = 250.0;  // millimetres per second at the right end of the axis
constexpr int kSteps = 96;
constexpr double kGap = 4.0;

double withinRange(double factor) {
  return factor > 0.0 ? std::min(factor, kLargestAccelerationFactor) : 0.0;
}

QColor faded(QColor color, double opacity) {
  color.setAlphaF(static_cast<float>(opacity));
  return color;
}

}  // namespace

AccelerationCurve::AccelerationCurve(QWidget* parent) : QWidget(parent) {
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
}

void AccelerationCurve::setFactor(double factor) {
  const double wanted = withinRange(factor);
  if (wanted < fFactor || wanted > fFactor) {
    fFactor = wanted;
    update();
  }
}

void AccelerationCurve::setLargestFactor(double factor) {
  if (withinRange(factor) > 0.0) {
    fLargestFactor = withinRange(factor);
    update();
  }
}

QRectF AccelerationCurve::plotRect() const {
  const double caption = QFontMetricsF(font()).height() + kGap;
  return QRectF(contentsRect()).adjusted(caption, kGap, -kGap, -caption);
}

QPointF AccelerationCurve::pointFor(double share, double factor) const {
  const QRectF plot = plotRect();
  const double speed = share * kFastestBall;
  const double fastest = kFastestBall * accelerationGain(kFastestBall, fLargestFactor);
  const double height = speed * accelerationGain(speed, factor) / fastest;
  return {plot.left() + share * plot.width(), plot.bottom() - height * plot.height()};
}

QPointF AccelerationCurve::pointAt(double share) const {
  return pointFor(share, fFactor);
}

QSize AccelerationCurve::sizeHint() const {
  const int line = fontMetrics().height();
  return {line * 15, line * 9};
}

QSize AccelerationCurve::minimumSizeHint() const {
  const int line = fontMetrics().height();
  const int besidePlot = fontMetrics().horizontalAdvance(tr("Pointer speed")) + line * 2;
  return {line * 9, std::max(line * 7, besidePlot)};
}

void AccelerationCurve::paintAxes(QPainter& painter) const {
  const QRectF plot = plotRect();
  const QColor text = palette().color(QPalette::Active, QPalette::WindowText);
  painter.setPen(Qt::NoPen);
  painter.setBrush(palette().color(QPalette::Active, QPalette::Base));
  painter.drawRoundedRect(plot, 4, 4);
  painter.setPen(QPen(faded(text, 0.12), 1));
  for (int line = 1; line < 4; ++line) {
    const double x = plot.left() + plot.width() * line / 4;
    const double y = plot.top() + plot.height() * line / 4;
    painter.drawLine(QPointF(x, plot.top()), QPointF(x, plot.bottom()));
    painter.drawLine(QPointF(plot.left(), y), QPointF(plot.right(), y));
  }
  painter.setPen(QPen(faded(text, 0.45), 1));
  painter.setBrush(Qt::NoBrush);
  painter.drawRoundedRect(plot, 4, 4);

  painter.setPen(faded(text, 0.8));
  const double caption = QFontMetricsF(font()).height();
  painter.drawText(QRectF(plot.left(), plot.bottom() + kGap, plot.width(), caption), Qt::AlignCenter,
                   tr("Ball speed"));
  painter.save();
  painter.translate(plot.left() - kGap - caption, plot.bottom());
  painter.rotate(-90);
  const QString speed = QFontMetricsF(font()).elidedText(tr("Pointer speed"), Qt::ElideRight, plot.height());
  painter.drawText(QRectF(0, 0, plot.height(), caption), Qt::AlignCenter, speed);
  painter.restore();
}

void AccelerationCurve::paintCurve(QPainter& painter) const {
  const QRectF plot = plotRect();
  const QColor text = palette().color(QPalette::Active, QPalette::WindowText);
  const QColor accent = palette().color(QPalette::Active, QPalette::Highlight);
  painter.setClipRect(plot.adjusted(1, 1, -1, -1));
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(faded(text, 0.5), 1.2, Qt::DashLine));
  painter.drawLine(pointFor(0, 0), pointFor(1, 0));

  QPainterPath curve(pointAt(0));
  for (int step = 1; step <= kSteps; ++step) {
    curve.lineTo(pointAt(static_cast<double>(step) / kSteps));
  }
  QPainterPath area = curve;
  area.lineTo(plot.bottomRight());
  area.closeSubpath();
  painter.fillPath(area, faded(accent, 0.15));
  painter.setPen(QPen(accent, 2.2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.drawPath(curve);
}

void AccelerationCurve::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setOpacity(isEnabled() ? 1.0 : kDisabledPictureOpacity);
  paintAxes(painter);
  paintCurve(painter);
}

}  // namespace veltrix
