#pragma once

#include <QWidget>
#include <cstdint>

class QLabel;

namespace veltrix {

class PictureView;

// The picture of one model with one of its buttons or chords lit, and its caption below. Its "tabs" are the
// model's buttons and chords in the order of buttonNumbers.
class ButtonTabs : public QWidget {
  Q_OBJECT
  Q_PROPERTY(int deviceTab READ deviceTab WRITE setDeviceTab)

 public:
  explicit ButtonTabs(QWidget* parent = nullptr);

  // The model, 2 to 7.
  int deviceTab() const { return fDeviceTab; }
  void setDeviceTab(int deviceTab);

  // The place of the lit button; none is lit outside the list.
  int currentIndex() const { return fIndex; }
  void setCurrentIndex(int index);

  QStringList lit() const;  // the ids of the picture's elements
  QString caption() const;

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 private:
  void showButton();

  PictureView* fPicture;
  QLabel* fCaption;
  int fDeviceTab = 0;
  int fIndex = -1;
};

}  // namespace veltrix
