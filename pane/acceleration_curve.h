#pragma once

#include <QWidget>

namespace veltrix {

// How fast the pointer moves over how fast the ball turns, for one acceleration factor, beside the straight
// line of an unaccelerated pointer. Greyed when the widget is disabled.
class AccelerationCurve : public QWidget {
  Q_OBJECT
  Q_PROPERTY(double factor READ factor WRITE setFactor)
  Q_PROPERTY(double largestFactor READ largestFactor WRITE setLargestFactor)

 public:
  explicit AccelerationCurve(QWidget* parent = nullptr);

  // 0 (no acceleration) to 4, both included; a value outside is taken as the nearer end, a not-a-number as 0.
  double factor() const { return fFactor; }
  void setFactor(double factor);

  // The factor whose curve ends in the upper right corner, above 0 and at most 4; 2 at first. Steeper curves
  // are cut off.
  double largestFactor() const { return fLargestFactor; }
  void setLargestFactor(double factor);

  // The room of the curve itself, without the captions of the axes, in widget coordinates.
  QRectF plotRect() const;

  // Where the curve is at a share of the ball speed axis (0 to 1), in widget coordinates; may lie above
  // plotRect().
  QPointF pointAt(double share) const;

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QPointF pointFor(double share, double factor) const;
  void paintAxes(QPainter& painter) const;
  void paintCurve(QPainter& painter) const;

  double fFactor = 0.0;
  double fLargestFactor = 2.0;
};

}  // namespace veltrix
