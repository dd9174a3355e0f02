#include "widgets/picture_view.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>

namespace veltrix {
namespace {

// A larger widget gets this many device pixels stretched, rather than a pixmap of hundreds of megabytes.
constexpr double kLargestSide = 2048.0;
constexpr int kUsualWidthInLines = 8;
constexpr int kUsualHeightInLines = 6;
constexpr QSize kSmallest{48, 32};

QAccessibleInterface* makeAccessible(const QString& className, QObject* object) {
  const bool plain = className == QLatin1String(PictureView::staticMetaObject.className());
  auto* widget = qobject_cast<QWidget*>(object);
  if (!plain || widget == nullptr) {
    return nullptr;
  }
  // A picture with controls in it is a group of them to someone who cannot see it.
  const bool group = object->metaObject() != &PictureView::staticMetaObject;
  return new QAccessibleWidget(widget, group ? QAccessible::Grouping : QAccessible::Graphic);
}

}  // namespace

PictureView::PictureView(QWidget* parent) : QWidget(parent) {
  static const bool kInstalled = (QAccessible::installFactory(makeAccessible), true);
  static_cast<void>(kInstalled);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void PictureView::setPicture(const QString& name) {
  if (name == fName) {
    return;
  }
  fName = name;
  fLoaded = false;
  fPixmap = {};
  updateGeometry();
  update();
}

void PictureView::setFolder(const QString& folder) {
  if (folder == fFolder) {
    return;
  }
  fFolder = folder;
  fLoaded = false;
  fPixmap = {};
  updateGeometry();
  update();
}

void PictureView::setLit(const QStringList& ids) {
  if (ids == fLit) {
    return;
  }
  fLit = ids;
  fPixmap = {};
  update();
}

Picture& PictureView::loaded() const {
  if (!fLoaded) {
    fPicture = fName.isEmpty() ? Picture()
                               : Picture(fFolder.isEmpty() ? standardPictureFolder() : fFolder, fName,
                                         PictureColors::fromPalette(palette()));
    fLoaded = true;
  }
  return fPicture;
}

QRectF PictureView::pictureRect() const {
  const QSizeF natural = loaded().size();
  const QRectF area = pictureArea();
  if (natural.isEmpty() || area.isEmpty()) {
    return {};
  }
  QRectF rect(QPointF(), natural.scaled(area.size(), Qt::KeepAspectRatio));
  rect.moveCenter(area.center());
  return rect;
}

QRectF PictureView::pictureElement(const QString& id) const {
  const Picture& picture = loaded();
  if (!picture.hasElement(id)) {
    return {};
  }
  const QRectF element = picture.elementRect(id);
  const QSizeF size = picture.size();
  return {element.x() / size.width(), element.y() / size.height(), element.width() / size.width(),
          element.height() / size.height()};
}

QRectF PictureView::elementRect(const QString& id) const {
  const QRectF target = pictureRect();
  const QRectF part = pictureElement(id);
  if (target.isEmpty() || part.isNull()) {
    return {};
  }
  return {target.x() + part.x() * target.width(), target.y() + part.y() * target.height(),
          part.width() * target.width(), part.height() * target.height()};
}

// Layouts ask hidden pages too; an answer from the file would have all pictures read before the first paint.
QSize PictureView::sizeHint() const {
  const int line = fontMetrics().height();
  return {line * kUsualWidthInLines, line * kUsualHeightInLines};
}

QSize PictureView::minimumSizeHint() const {
  return kSmallest;
}

void PictureView::renderInto(const QSize& pixels, qreal scale) {
  fPixmap = QPixmap(pixels);
  fPixmap.fill(Qt::transparent);
  fPixmap.setDevicePixelRatio(scale);
  QPainter painter(&fPixmap);
  painter.setRenderHint(QPainter::Antialiasing);
  const QRectF target(QPointF(), QSizeF(pixels) / scale);
  loaded().draw(painter, target, PictureColors::fromPalette(palette()), fLit);
}

void PictureView::paintEvent(QPaintEvent* /*event*/) {
  const QRectF target = pictureRect();
  if (target.isEmpty()) {
    return;
  }
  const double wanted = std::max(target.width(), target.height()) * devicePixelRatioF();
  const double scale = devicePixelRatioF() * std::min(1.0, kLargestSide / wanted);
  const QSize pixels(std::max(1, static_cast<int>(std::lround(target.width() * scale))),
                     std::max(1, static_cast<int>(std::lround(target.height() * scale))));
  if (fPixmap.isNull() || fPixmap.size() != pixels) {
    renderInto(pixels, scale);
  }
  QPainter painter(this);
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  painter.setOpacity(isEnabled() ? 1.0 : kDisabledPictureOpacity);
  // On whole device pixels, so that nothing is smeared over two.
  const auto onPixel = [this](qreal at) {
    return std::round(at * devicePixelRatioF()) / devicePixelRatioF();
  };
  painter.drawPixmap(QPointF(onPixel(target.x()), onPixel(target.y())), fPixmap);
}

void PictureView::changeEvent(QEvent* event) {
  switch (event->type()) {
    case QEvent::PaletteChange:
    case QEvent::EnabledChange:
    case QEvent::StyleChange:
      fPixmap = {};
      update();
      break;
    default:
      break;
  }
  QWidget::changeEvent(event);
}

}  // namespace veltrix
