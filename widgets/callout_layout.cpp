#include "widgets/callout_layout.h"

#include <algorithm>
#include <cmath>

namespace veltrix {
namespace {

// The columns never take more of the width than this each, so that the picture stays recognisable.
constexpr double kWidestColumn = 0.32;
constexpr int kCaptionGap = 3;

int heightOf(const CalloutRequest& request) {
  return request.caption.height() + (request.control.isEmpty() ? 0 : kCaptionGap + request.control.height());
}

int widthOf(const CalloutRequest& request) {
  return std::max(request.caption.width(), request.control.width());
}

// How far below the callout's upper edge its leader line ends: at the middle of the control, or of a lone
// caption.
int middleOf(const CalloutRequest& request) {
  return request.control.isEmpty() ? request.caption.height() / 2
                                   : heightOf(request) - (request.control.height() + 1) / 2;
}

// The largest extent of the callouts on one side: widths for a column, heights for a row.
int extentOf(const QList<CalloutRequest>& requests, CalloutSide side) {
  const bool column = side == CalloutSide::kLeft || side == CalloutSide::kRight;
  int extent = 0;
  for (const CalloutRequest& request : requests) {
    if (request.side == side) {
      extent = std::max(extent, column ? widthOf(request) : heightOf(request));
    }
  }
  return extent;
}

int columnWidth(const QList<CalloutRequest>& requests) {
  return std::max(extentOf(requests, CalloutSide::kLeft), extentOf(requests, CalloutSide::kRight));
}

CalloutPlace placeIn(const QRect& box, const CalloutRequest& request) {
  CalloutPlace place;
  place.number = request.number;
  place.caption = QRect(box.topLeft(), QSize(box.width(), request.caption.height()));
  if (!request.control.isEmpty()) {
    place.control =
        QRect(box.left(), place.caption.bottom() + 1 + kCaptionGap, box.width(), request.control.height());
  }
  return place;
}

// Upper edges for the callouts of one column: each as near to its wish as its neighbours and the column
// allow.
QList<int> stack(const QList<int>& wishes, const QList<int>& heights, const QRect& column, int spacing) {
  QList<int> tops = wishes;
  int limit = column.top();
  for (qsizetype i = 0; i < tops.size(); ++i) {
    tops[i] = std::max(tops[i], limit);
    limit = tops[i] + heights[i] + spacing;
  }
  limit = column.bottom() + 1;
  for (qsizetype i = tops.size() - 1; i >= 0; --i) {
    tops[i] = std::min(tops[i], limit - heights[i]);
    limit = tops[i] - spacing;
  }
  return tops;
}

void placeColumn(const QRect& column, const QRect& picture, CalloutSide side,
                 const QList<CalloutRequest>& requests, int spacing, QList<CalloutPlace>& places) {
  QList<qsizetype> order;
  for (qsizetype i = 0; i < requests.size(); ++i) {
    if (requests[i].side == side) {
      order.append(i);
    }
  }
  std::stable_sort(order.begin(), order.end(),
                   [&requests](qsizetype a, qsizetype b) { return requests[a].height < requests[b].height; });
  QList<int> wishes;
  QList<int> heights;
  for (const qsizetype i : order) {
    heights.append(heightOf(requests[i]));
    const int target = picture.top() + static_cast<int>(std::lround(requests[i].height * picture.height()));
    wishes.append(target - middleOf(requests[i]));
  }
  const QList<int> tops = stack(wishes, heights, column, spacing);
  for (qsizetype k = 0; k < order.size(); ++k) {
    places[order[k]] = placeIn(QRect(column.left(), tops[k], column.width(), heights[k]), requests[order[k]]);
  }
}

QRect fitted(const QRect& room, const QSizeF& picture) {
  if (picture.isEmpty() || !room.isValid()) {
    return room;
  }
  QRect rect(QPoint(), picture.scaled(room.size(), Qt::KeepAspectRatio).toSize().boundedTo(room.size()));
  rect.moveCenter(room.center());
  return rect;
}

}  // namespace

CalloutLayout placeCallouts(const QRect& area, const QSizeF& picture, const QList<CalloutRequest>& requests,
                            int spacing) {
  const int column = std::min(columnWidth(requests), static_cast<int>(area.width() * kWidestColumn));
  const auto margin = [spacing](int extent) { return extent > 0 ? extent + 2 * spacing : 0; };
  const int top = margin(extentOf(requests, CalloutSide::kTop));
  const int bottom = margin(extentOf(requests, CalloutSide::kBottom));
  CalloutLayout layout;
  const QRect room = area.adjusted(margin(column), top, -margin(column), -bottom);
  layout.picture = fitted(room, picture);
  layout.places.resize(requests.size());
  const QRect left(area.left(), area.top(), column, area.height());
  placeColumn(left, layout.picture, CalloutSide::kLeft, requests, spacing, layout.places);
  const QRect right(area.right() + 1 - column, area.top(), column, area.height());
  placeColumn(right, layout.picture, CalloutSide::kRight, requests, spacing, layout.places);
  for (qsizetype i = 0; i < requests.size(); ++i) {
    const CalloutRequest& request = requests[i];
    if (request.side == CalloutSide::kTop || request.side == CalloutSide::kBottom) {
      const int width = std::min(std::max(widthOf(request), column), room.width());
      const int height = heightOf(request);
      const int y = request.side == CalloutSide::kTop ? area.top() : area.bottom() + 1 - height;
      layout.places[i] = placeIn(QRect(area.center().x() - width / 2, y, width, height), request);
    }
  }
  return layout;
}

QSize calloutSize(const QSize& picture, const QList<CalloutRequest>& requests, int spacing) {
  int left = 0;
  int right = 0;
  for (const CalloutRequest& request : requests) {
    if (request.side == CalloutSide::kLeft) {
      left += heightOf(request) + spacing;
    } else if (request.side == CalloutSide::kRight) {
      right += heightOf(request) + spacing;
    }
  }
  const int rows =
      extentOf(requests, CalloutSide::kTop) + extentOf(requests, CalloutSide::kBottom) + 4 * spacing;
  const int column = columnWidth(requests);
  const int width = std::max(picture.width() + 2 * (column + 2 * spacing),
                             static_cast<int>(std::ceil(column / kWidestColumn)));
  return {width, std::max(picture.height() + rows, std::max(left, right))};
}

}  // namespace veltrix
