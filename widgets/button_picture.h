#pragma once

#include <QLabel>
#include <QList>
#include <QPainterPath>
#include <QPointer>

#include "widgets/callout_layout.h"
#include "widgets/picture_view.h"

namespace veltrix {

// A trackball's picture with a callout for each button and chord (numbers of widgets/button_numbers.h): a
// disc or bracket in the picture, a leader line, a caption, and a control below the caption. The control that
// has the focus or the mouse lights its buttons up.
//
// In a .ui file the controls are plain children that carry their number in the dynamic property "callout";
// the widget needs no layout of its own.
class ButtonPicture : public PictureView {
  Q_OBJECT

 public:
  explicit ButtonPicture(QWidget* parent = nullptr);

  // Adds a callout for button or chord `number`. The control becomes a child, is placed below the caption,
  // and gets the caption as its accessible name when it has none; with null the callout is a caption alone. A
  // number that is there already is replaced.
  void addCallout(int number, QWidget* control = nullptr);

  // The numbers of the callouts in the order in which they came.
  QList<int> callouts() const;

  // In widget coordinates; empty for a number without a callout.
  QRect captionRect(int number) const;
  QRect controlRect(int number) const;

  // The leader line from the caption to the picture, in widget coordinates.
  QPainterPath leaderLine(int number) const;

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  QRect pictureArea() const override;
  bool event(QEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;

 private:
  struct Callout {
    int number = 0;
    QLabel* label = nullptr;
    QPointer<QWidget> control;
    bool lit = false;
  };

  const Callout* find(int number) const;
  void adoptChildren();
  void arrange();
  void arrangeIfShown();
  void updateLit();
  void noteMouse(const QEvent& event, QObject* control);
  CalloutRequest request(const Callout& callout) const;
  QList<CalloutRequest> requests() const;
  QPointF relativeAnchor(int button) const;
  QPointF anchor(int button) const;
  void paintDisc(QPainter& painter, int button) const;
  int spacing() const;

  QList<Callout> fCallouts;
  QPointer<QWidget> fHovered;  // the control under the mouse, as far as that can be known
  CalloutLayout fLayout;
};

}  // namespace veltrix
