#pragma once

#include <QPixmap>
#include <QString>
#include <QStringList>
#include <QWidget>

#include "widgets/picture.h"

namespace veltrix {

// Shows one picture of the bundle in the colours of the widget's palette, as large as fits with its
// proportions kept. The file is read at the first paint or question about it.
class PictureView : public QWidget {
  Q_OBJECT
  Q_PROPERTY(QString picture READ picture WRITE setPicture)
  Q_PROPERTY(QString folder READ folder WRITE setFolder)
  Q_PROPERTY(QStringList lit READ lit WRITE setLit)

 public:
  explicit PictureView(QWidget* parent = nullptr);

  // The base name of the SVG file, without folder and ".svg"; nothing is drawn when there is no such file.
  QString picture() const { return fName; }
  void setPicture(const QString& name);

  // Where the pictures are; empty, the default, stands for the bundle's own.
  QString folder() const { return fFolder; }
  void setFolder(const QString& folder);

  // The ids of the elements ("button0") that are drawn in the highlight colour.
  QStringList lit() const { return fLit; }
  void setLit(const QStringList& ids);

  // Where the picture is drawn, in widget coordinates; empty when there is none.
  QRectF pictureRect() const;

  // Where an element of the picture is drawn, in widget coordinates; empty when there is no such element.
  QRectF elementRect(const QString& id) const;

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  // The picture's own size; empty when there is none.
  QSizeF pictureSize() const { return loaded().size(); }

  // Where an element lies as shares of the picture's width and height; null when there is no such element.
  QRectF pictureElement(const QString& id) const;

  // The room that the picture may fill, in widget coordinates.
  virtual QRect pictureArea() const { return contentsRect(); }

  void paintEvent(QPaintEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  Picture& loaded() const;
  void renderInto(const QSize& pixels, qreal scale);

  QString fName;
  QString fFolder;
  QStringList fLit;
  mutable Picture fPicture;
  mutable bool fLoaded = false;
  QPixmap fPixmap;  // the last rendering; null when it is stale
};

}  // namespace veltrix
