#include "widgets/callout_lines.h"

#include <QPainter>
#include <algorithm>

namespace veltrix {
namespace {

QColor faded(QColor color, double opacity) {
  color.setAlphaF(static_cast<float>(opacity));
  return color;
}

}  // namespace

QPainterPath buttonLine(const CalloutPlace& place, const QPointF& target, int spacing) {
  const QRect edge = place.control.isEmpty() ? place.caption : place.control;
  const bool left = edge.center().x() < target.x();
  // Straight across when the target is level with any part of the control's middle.
  const double slack = edge.height() * 0.25;
  const double middle = edge.center().y() + 0.5;
  const QPointF start(left ? edge.right() + 4.0 : edge.left() - 3.0,
                      std::clamp(target.y(), middle - slack, middle + slack));
  const double elbow = left ? start.x() + spacing : start.x() - spacing;
  QPainterPath path(start);
  path.lineTo(elbow, start.y());
  path.lineTo(target);
  return path;
}

QPainterPath chordBracket(const CalloutPlace& place, const QPointF& first, const QPointF& second,
                          const QRectF& picture, int spacing) {
  const bool above = place.caption.center().y() < first.y();
  const double bar = above ? picture.top() - spacing * 0.5 : picture.bottom() + spacing * 0.5;
  const double end = above ? (place.control.isEmpty() ? place.caption : place.control).bottom() + 3.0
                           : place.caption.top() - 2.0;
  const double middle = place.caption.center().x() + 0.5;
  const double round = std::min(8.0, spacing * 0.5);
  const double up = above ? round : -round;
  QPainterPath path(first);
  path.lineTo(first.x(), bar + up);
  path.quadTo(first.x(), bar, first.x() + round, bar);
  path.lineTo(second.x() - round, bar);
  path.quadTo(second.x(), bar, second.x(), bar + up);
  path.lineTo(second);
  path.moveTo(middle, bar);
  path.lineTo(middle, end);
  return path;
}

void paintCalloutLine(QPainter& painter, const QPainterPath& line, const QPalette& palette, bool lit) {
  const QColor color =
      lit ? palette.color(QPalette::Highlight) : faded(palette.color(QPalette::WindowText), 0.55);
  painter.setBrush(Qt::NoBrush);
  if (!lit) {
    // A halo in the window's colour keeps the line apart from the outlines that it crosses.
    painter.setPen(QPen(palette.color(QPalette::Window), 4.0, Qt::SolidLine, Qt::FlatCap, Qt::RoundJoin));
    painter.drawPath(line);
  }
  painter.setPen(QPen(color, lit ? 2.0 : 1.2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.drawPath(line);
}

void paintButtonDisc(QPainter& painter, int button, const QRectF& disc, const QPalette& palette, bool lit) {
  const QColor edge = palette.color(lit ? QPalette::HighlightedText : QPalette::WindowText);
  painter.setPen(QPen(lit ? edge : faded(edge, 0.8), 1.4));
  painter.setBrush(palette.color(lit ? QPalette::HighlightedText : QPalette::Base));
  painter.drawEllipse(disc);
  painter.setPen(palette.color(lit ? QPalette::Highlight : QPalette::Text));
  painter.drawText(disc, Qt::AlignCenter, QString::number(button + 1));
}

}  // namespace veltrix
