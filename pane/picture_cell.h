#pragma once

#include <QAbstractButton>

class QLabel;

namespace veltrix {

class PictureView;

// A checkable button that shows a picture above its text; the text wraps. While it is disabled both are
// dimmed.
class PictureCell : public QAbstractButton {
  Q_OBJECT
  Q_PROPERTY(QString picture READ picture WRITE setPicture)
  Q_PROPERTY(QString caption READ caption WRITE setCaption)
  Q_PROPERTY(int pictureLines READ pictureLines WRITE setPictureLines)

 public:
  explicit PictureCell(QWidget* parent = nullptr);

  QString picture() const;  // the base name of the picture file
  void setPicture(const QString& name);

  QString caption() const { return text(); }  // also the name that a screen reader says
  void setCaption(const QString& caption);

  // The height of the picture in lines of text.
  int pictureLines() const { return fPictureLines; }
  void setPictureLines(int lines);

 protected:
  void changeEvent(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  PictureView* fPicture;
  QLabel* fCaption;
  int fPictureLines = 3;
};

}  // namespace veltrix
