#include "widgets/button_picture.h"

#include <QEvent>
#include <QMouseEvent>
#include <QPainter>
#include <algorithm>

#include "widgets/button_numbers.h"
#include "widgets/callout_lines.h"

namespace veltrix {
namespace {

constexpr const char* kNumberProperty = "callout";
constexpr QSize kPictureHint{250, 220};
constexpr QSize kPictureMinimum{120, 110};

}  // namespace

ButtonPicture::ButtonPicture(QWidget* parent) : PictureView(parent) {}

void ButtonPicture::addCallout(int number, QWidget* control) {
  auto callout = std::find_if(fCallouts.begin(), fCallouts.end(),
                              [number](const Callout& one) { return one.number == number; });
  if (callout == fCallouts.end()) {
    callout = fCallouts.insert(fCallouts.end(), {number, new QLabel(this), nullptr, false});
    callout->label->setText(calloutCaption(number));
    callout->label->setVisible(true);
  }
  callout->control = control;
  callout->label->setBuddy(control);
  callout->label->setAlignment(Qt::AlignCenter);
  if (control != nullptr) {
    if (control->parentWidget() != this) {
      control->setParent(this);
      control->show();
    }
    control->setProperty(kNumberProperty, number);
    if (control->accessibleName().isEmpty()) {
      control->setAccessibleName(calloutCaption(number));
    }
    control->installEventFilter(this);
  }
  updateGeometry();
  arrangeIfShown();
}

QList<int> ButtonPicture::callouts() const {
  QList<int> numbers;
  for (const Callout& callout : fCallouts) {
    numbers.append(callout.number);
  }
  return numbers;
}

const ButtonPicture::Callout* ButtonPicture::find(int number) const {
  const auto callout = std::find_if(fCallouts.begin(), fCallouts.end(),
                                    [number](const Callout& one) { return one.number == number; });
  return callout == fCallouts.end() ? nullptr : &*callout;
}

// A .ui file sets the properties of a child after it made it, so the children are looked through once all are
// there.
void ButtonPicture::adoptChildren() {
  const auto children = findChildren<QWidget*>(Qt::FindDirectChildrenOnly);
  for (QWidget* child : children) {
    const QVariant number = child->property(kNumberProperty);
    const bool known = std::any_of(fCallouts.begin(), fCallouts.end(),
                                   [child](const Callout& one) { return one.control == child; });
    if (number.isValid() && !known) {
      addCallout(number.toInt(), child);
    }
  }
}

QRect ButtonPicture::captionRect(int number) const {
  const Callout* callout = find(number);
  return callout == nullptr ? QRect() : callout->label->geometry();
}

QRect ButtonPicture::controlRect(int number) const {
  const Callout* callout = find(number);
  return callout == nullptr || callout->control == nullptr ? QRect() : callout->control->geometry();
}

int ButtonPicture::spacing() const {
  return std::max(8, fontMetrics().height() * 3 / 4);
}

CalloutRequest ButtonPicture::request(const Callout& callout) const {
  const auto [first, second] = buttonsOf(callout.number);
  CalloutRequest result;
  result.number = callout.number;
  result.caption = callout.label->sizeHint();
  if (callout.control != nullptr) {
    result.control = callout.control->sizeHint();
  }
  const QPointF place = (relativeAnchor(first) + relativeAnchor(second)) / 2;
  result.height = place.y();
  if (isChord(callout.number)) {
    result.side = place.y() < 0.5 && callout.number != kFirstChord ? CalloutSide::kTop : CalloutSide::kBottom;
  } else {
    result.side = place.x() < 0.5 ? CalloutSide::kLeft : CalloutSide::kRight;
  }
  return result;
}

QList<CalloutRequest> ButtonPicture::requests() const {
  QList<CalloutRequest> result;
  for (const Callout& callout : fCallouts) {
    result.append(request(callout));
  }
  return result;
}

void ButtonPicture::arrange() {
  fLayout = placeCallouts(contentsRect(), pictureSize(), requests(), spacing());
  for (qsizetype i = 0; i < fCallouts.size(); ++i) {
    const bool lone = fCallouts[i].control == nullptr;
    const bool left = fLayout.places[i].caption.right() < fLayout.picture.left();
    if (!isChord(fCallouts[i].number)) {
      // A lone caption at the left ends where its line begins.
      fCallouts[i].label->setAlignment((lone && left ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
    }
    fCallouts[i].label->setGeometry(fLayout.places[i].caption);
    if (!lone) {
      fCallouts[i].control->setGeometry(fLayout.places[i].control);
    }
  }
  update();
}

// Most pages are never looked at; theirs is done when they are.
void ButtonPicture::arrangeIfShown() {
  if (isVisible()) {
    arrange();
  }
}

QRect ButtonPicture::pictureArea() const {
  return fCallouts.isEmpty() ? contentsRect() : fLayout.picture;
}

QSize ButtonPicture::sizeHint() const {
  return calloutSize(kPictureHint, requests(), spacing());
}

QSize ButtonPicture::minimumSizeHint() const {
  return calloutSize(kPictureMinimum, requests(), spacing());
}

// The middle of the button's mark, from (0, 0) at the picture's upper left to (1, 1) at its lower right
// corner.
QPointF ButtonPicture::relativeAnchor(int button) const {
  const QRectF mark = pictureElement(QStringLiteral("anchor%1").arg(button));
  const QRectF shape = mark.isNull() ? pictureElement(buttonElement(button)) : mark;
  return shape.isNull() ? QPointF(0.5, 0.5) : shape.center();
}

QPointF ButtonPicture::anchor(int button) const {
  const QRectF picture = pictureRect();
  const QPointF place = relativeAnchor(button);
  return {picture.left() + place.x() * picture.width(), picture.top() + place.y() * picture.height()};
}

QPainterPath ButtonPicture::leaderLine(int number) const {
  const auto place = std::find_if(fLayout.places.begin(), fLayout.places.end(),
                                  [number](const CalloutPlace& one) { return one.number == number; });
  if (place == fLayout.places.end() || pictureRect().isEmpty()) {
    return {};
  }
  if (isChord(number)) {
    const auto [first, second] = buttonsOf(number);
    return chordBracket(*place, anchor(first), anchor(second), pictureRect(), spacing());
  }
  return buttonLine(*place, anchor(number), spacing());
}

void ButtonPicture::paintDisc(QPainter& painter, int button) const {
  const double radius = fontMetrics().height() * 0.62;
  const QRectF disc(anchor(button) - QPointF(radius, radius), QSizeF(radius * 2, radius * 2));
  paintButtonDisc(painter, button, disc, palette(), lit().contains(buttonElement(button)));
}

void ButtonPicture::paintEvent(QPaintEvent* event) {
  PictureView::paintEvent(event);
  if (pictureRect().isEmpty()) {
    return;
  }
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setOpacity(isEnabled() ? 1.0 : kDisabledPictureOpacity);
  for (const bool lit : {false, true}) {
    for (const Callout& callout : fCallouts) {
      if (callout.lit == lit) {
        paintCalloutLine(painter, leaderLine(callout.number), palette(), lit);
      }
    }
  }
  for (const Callout& callout : fCallouts) {
    if (!isChord(callout.number)) {
      paintDisc(painter, callout.number);
    }
  }
}

void ButtonPicture::updateLit() {
  QStringList ids;
  for (Callout& callout : fCallouts) {
    callout.lit = callout.control != nullptr && callout.control->isEnabled() &&
                  (callout.control->hasFocus() || callout.control == fHovered);
    if (callout.lit) {
      ids << buttonElements(callout.number);
    }
  }
  ids.removeDuplicates();
  setLit(ids);
  update();
}

bool ButtonPicture::event(QEvent* event) {
  switch (event->type()) {
    case QEvent::Polish:
      adoptChildren();
      break;
    case QEvent::Show:
      arrange();
      break;
    case QEvent::LayoutRequest:
    case QEvent::FontChange:
    case QEvent::StyleChange:
      updateGeometry();
      arrangeIfShown();
      break;
    default:
      break;
  }
  return PictureView::event(event);
}

// A menu or a dialog that opens over a control takes the mouse away from it without a word. What was pressed
// is lit by its focus already.
void ButtonPicture::noteMouse(const QEvent& event, QObject* control) {
  switch (event.type()) {
    case QEvent::Enter:
      fHovered = qobject_cast<QWidget*>(control);
      break;
    case QEvent::Leave:
    case QEvent::MouseButtonPress:
    case QEvent::Hide:
      if (fHovered == control) {
        fHovered = nullptr;
      }
      break;
    case QEvent::WindowDeactivate:
      fHovered = nullptr;
      // The style would go on drawing it as under the mouse.
      qobject_cast<QWidget*>(control)->setAttribute(Qt::WA_UnderMouse, false);
      break;
    default:
      break;
  }
}

bool ButtonPicture::eventFilter(QObject* watched, QEvent* event) {
  noteMouse(*event, watched);
  switch (event->type()) {
    case QEvent::FocusIn:
    case QEvent::FocusOut:
    case QEvent::Enter:
    case QEvent::Leave:
    case QEvent::MouseButtonPress:
    case QEvent::WindowDeactivate:
    case QEvent::Hide:
    case QEvent::EnabledChange:
      // The control's own state changes after the filters ran.
      QMetaObject::invokeMethod(this, &ButtonPicture::updateLit, Qt::QueuedConnection);
      break;
    default:
      break;
  }
  return PictureView::eventFilter(watched, event);
}

void ButtonPicture::resizeEvent(QResizeEvent* event) {
  PictureView::resizeEvent(event);
  arrange();
}

// A click on a button in the picture leads to its control.
void ButtonPicture::mousePressEvent(QMouseEvent* event) {
  for (const Callout& callout : fCallouts) {
    if (!isChord(callout.number) && callout.control != nullptr && callout.control->isEnabled() &&
        elementRect(buttonElement(callout.number)).contains(event->position())) {
      callout.control->setFocus(Qt::MouseFocusReason);
      event->accept();
      return;
    }
  }
  PictureView::mousePressEvent(event);
}

}  // namespace veltrix
