#pragma once

#include <QStackedWidget>

namespace veltrix {

// Pages that are as high as there is room, whatever their width. A plain stack passes on that one page has
// text to wrap, and then everything around it is measured again and again, hidden pages included, before it
// is first shown.
class PageStack : public QStackedWidget {
 public:
  using QStackedWidget::QStackedWidget;
  bool hasHeightForWidth() const override { return false; }
};

}  // namespace veltrix
