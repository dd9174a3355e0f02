#include "pane/detent_slider.h"

#include <QKeyEvent>
#include <QSignalBlocker>
#include <QStyleOptionSlider>
#include <QStylePainter>
#include <QWheelEvent>
#include <algorithm>
#include <utility>

#include "pane/slider_positions.h"

namespace veltrix {

DetentSlider::DetentSlider(QWidget* parent) : QSlider(parent) {
  setOrientation(Qt::Horizontal);
  setFocusPolicy(Qt::StrongFocus);
  connect(this, &QAbstractSlider::actionTriggered, this, &DetentSlider::settle);
}

void DetentSlider::setDetents(std::vector<int> detents) {
  if (detents == fDetents || detents.empty()) {
    return;
  }
  const QSignalBlocker quiet(this);
  fDetents = std::move(detents);
  setRange(fDetents.front(), fDetents.back());
}

void DetentSlider::showPosition(int position) {
  const QSignalBlocker quiet(this);
  setValue(nearestPosition(fDetents, position));
}

// The slider has not yet taken over the position that the action proposes; it takes what is left here.
void DetentSlider::settle(int action) {
  const int proposed = sliderPosition();
  switch (action) {
    case SliderSingleStepAdd:
    case SliderSingleStepSub:
      setSliderPosition(stepPosition(fDetents, value(), action == SliderSingleStepAdd ? 1 : -1));
      break;
    case SliderPageStepAdd:
      setSliderPosition(std::max(nearestPosition(fDetents, proposed), stepPosition(fDetents, value(), 1)));
      break;
    case SliderPageStepSub:
      setSliderPosition(std::min(nearestPosition(fDetents, proposed), stepPosition(fDetents, value(), -1)));
      break;
    default:
      setSliderPosition(nearestPosition(fDetents, proposed));
      break;
  }
}

void DetentSlider::keyPressEvent(QKeyEvent* event) {
  // Home means the start as it is seen, also when the slider runs the other way.
  if (invertedControls() && (event->key() == Qt::Key_Home || event->key() == Qt::Key_End)) {
    triggerAction(event->key() == Qt::Key_Home ? SliderToMaximum : SliderToMinimum);
    event->accept();
    return;
  }
  QSlider::keyPressEvent(event);
}

// A slider whose appearance is inverted is drawn as a mirrored ordinary one: styles fill the groove from the
// smallest position on, which would be the wrong side here.
void DetentSlider::paintEvent(QPaintEvent* event) {
  if (!invertedAppearance()) {
    QSlider::paintEvent(event);
    return;
  }
  QStyleOptionSlider option;
  initStyleOption(&option);
  option.upsideDown = !option.upsideDown;
  option.sliderPosition = minimum() + maximum() - sliderPosition();
  option.subControls = QStyle::SC_SliderGroove | QStyle::SC_SliderHandle;
  if (tickPosition() != NoTicks) {
    option.subControls |= QStyle::SC_SliderTickmarks;
  }
  option.activeSubControls = isSliderDown() || underMouse() ? QStyle::SC_SliderHandle : QStyle::SC_None;
  if (isSliderDown()) {
    option.state |= QStyle::State_Sunken;
  }
  QStylePainter(this).drawComplexControl(QStyle::CC_Slider, option);
}

void DetentSlider::wheelEvent(QWheelEvent* event) {
  if (!hasFocus()) {
    event->ignore();
    return;
  }
  const QPoint angle = event->angleDelta();
  fWheelRemainder += angle.y() != 0 ? angle.y() : angle.x();
  const int notches = fWheelRemainder / QWheelEvent::DefaultDeltasPerStep;
  fWheelRemainder %= QWheelEvent::DefaultDeltasPerStep;
  setValue(stepPosition(fDetents, value(), invertedControls() ? -notches : notches));
  event->accept();
}

}  // namespace veltrix
