#include "widgets/picture_icon.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPixmap>

#include "widgets/picture.h"

namespace veltrix {
namespace {

constexpr int kLargestSide = 1024;

class PictureIconEngine : public QIconEngine {
 public:
  PictureIconEngine(const QString& name, const QString& folder)
      : fName(name),
        fFolder(folder),
        fPicture(folder.isEmpty() ? standardPictureFolder() : folder, name,
                 PictureColors::fromPalette(QGuiApplication::palette())) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State /*state*/) override {
    QRectF target(QPointF(), fPicture.size().scaled(rect.size(), Qt::KeepAspectRatio));
    target.moveCenter(QRectF(rect).center());
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setOpacity(painter->opacity() * (mode == QIcon::Disabled ? kDisabledPictureOpacity : 1.0));
    fPicture.draw(*painter, target, PictureColors::fromPalette(QGuiApplication::palette()));
    painter->restore();
  }

  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    QPixmap result(size.boundedTo({kLargestSide, kLargestSide}));
    result.fill(Qt::transparent);
    QPainter painter(&result);
    paint(&painter, result.rect(), mode, state);
    return result;
  }

  bool isNull() override { return fPicture.isNull(); }
  QIconEngine* clone() const override { return new PictureIconEngine(fName, fFolder); }

 private:
  QString fName;
  QString fFolder;
  Picture fPicture;
};

}  // namespace

QIcon pictureIcon(const QString& name, const QString& folder) {
  return QIcon(new PictureIconEngine(name, folder));
}

}  // namespace veltrix
