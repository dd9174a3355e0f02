#pragma once

#include <QList>
#include <QPointF>
#include <QRect>
#include <QSize>

namespace veltrix {

// On which side of the picture a callout stands.
enum class CalloutSide { kLeft, kRight, kTop, kBottom };

// One thing to be placed beside the picture: a caption with a control below it.
struct CalloutRequest {
  int number = 0;  // a button, 0 to 3, or a chord, 8 or 9
  CalloutSide side = CalloutSide::kLeft;
  double height = 0.5;  // where in the picture its target lies: 0 is the upper edge, 1 the lower one
  QSize caption;
  QSize control;  // empty when the callout has a caption only
};

struct CalloutPlace {
  int number = 0;
  QRect caption;
  QRect control;
};

struct CalloutLayout {
  QRect picture;               // where the picture goes, in its proportions
  QList<CalloutPlace> places;  // in the order of the requests
};

// Shares `area` between the picture in the middle, a column at its left and right and a row above and below.
// Callouts of a column stand as near to the height of their target as fits without overlap; those of a row
// are centred. The picture is made as large as its proportions allow; with an empty `picture` it takes all
// the room that is left.
CalloutLayout placeCallouts(const QRect& area, const QSizeF& picture, const QList<CalloutRequest>& requests,
                            int spacing);

// The smallest size in which every callout and a picture of `picture` have room.
QSize calloutSize(const QSize& picture, const QList<CalloutRequest>& requests, int spacing);

}  // namespace veltrix
