#pragma once

#include <QComboBox>
#include <cstdint>

namespace veltrix {

// A pop-up of scroll speeds whose items carry an amount as their tag.
class SpeedMenu : public QComboBox {
  Q_OBJECT

 public:
  explicit SpeedMenu(QWidget* parent = nullptr);

  std::int32_t tag() const;  // of the selected item; 0 without one

  // Selects the first item of that tag; the selection stays when there is none.
  void selectTag(std::int64_t tag);

  // The list that opens bears the name of the menu.
  void showPopup() override;

 protected:
  void wheelEvent(QWheelEvent* event) override;
};

}  // namespace veltrix
