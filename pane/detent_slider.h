#pragma once

#include <QSlider>
#include <vector>

namespace veltrix {

// A slider that comes to rest only on given positions (every one, at first), however it is moved. The wheel
// moves it by one position a notch while it has the focus; without the focus the wheel belongs to the page
// around it.
class DetentSlider : public QSlider {
  Q_OBJECT

 public:
  explicit DetentSlider(QWidget* parent = nullptr);

  // `detents` rise; the slider's range becomes their ends. Sends no signal, even when the range moves the
  // slider.
  void setDetents(std::vector<int> detents);
  const std::vector<int>& detents() const { return fDetents; }

  // Moves to the position nearest to `position`, without a signal: for showing what is stored.
  void showPosition(int position);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;

 private:
  void settle(int action);

  std::vector<int> fDetents;
  int fWheelRemainder = 0;
};

}  // namespace veltrix
