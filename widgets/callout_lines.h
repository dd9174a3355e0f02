#pragma once

#include <QPainterPath>
#include <QPalette>
#include <QPointF>
#include <QRectF>

#include "widgets/callout_layout.h"

class QPainter;

namespace veltrix {

// The line from a button's callout to `target` in the picture: straight across for `spacing` pixels, then
// slanting. All in widget coordinates.
QPainterPath buttonLine(const CalloutPlace& place, const QPointF& target, int spacing);

// The line from a chord's callout, above or below `picture`, to a bar along the picture's edge that ends at
// the two buttons. `first` lies to the left of `second`.
QPainterPath chordBracket(const CalloutPlace& place, const QPointF& first, const QPointF& second,
                          const QRectF& picture, int spacing);

// Draws the line in the highlight's colour when it is lit, else in a faint one. Leaves its pen in the
// painter.
void paintCalloutLine(QPainter& painter, const QPainterPath& line, const QPalette& palette, bool lit);

// Draws the disc that carries a button's number, as people count it. Leaves its pen and brush in the painter.
void paintButtonDisc(QPainter& painter, int button, const QRectF& disc, const QPalette& palette, bool lit);

}  // namespace veltrix
