#include "editor/speed_menu.h"

#include <QAbstractItemView>
#include <QWheelEvent>

namespace veltrix {
namespace {

// Every amount that the slider of the scrolling page can give the wheel.
constexpr int kSlowest = 1;
constexpr int kFastest = 20;

}  // namespace

SpeedMenu::SpeedMenu(QWidget* parent) : QComboBox(parent) {
  setFocusPolicy(Qt::StrongFocus);
  setMaxVisibleItems(kFastest);
  for (int amount = kSlowest; amount <= kFastest; ++amount) {
    const QString title = amount == kSlowest   ? tr("%1 per step (slow)")
                          : amount == kFastest ? tr("%1 per step (fast)")
                                               : tr("%1 per step");
    addItem(title.arg(amount), amount);
  }
}

std::int32_t SpeedMenu::tag() const {
  return currentData().toInt();
}

void SpeedMenu::selectTag(std::int64_t tag) {
  for (int index = 0; index < count(); ++index) {
    if (itemData(index).toLongLong() == tag) {
      setCurrentIndex(index);
      return;
    }
  }
}

void SpeedMenu::showPopup() {
  view()->setAccessibleName(accessibleName());
  QComboBox::showPopup();
}

// A turn of the wheel that was not meant for the menu must not change it.
void SpeedMenu::wheelEvent(QWheelEvent* event) {
  if (hasFocus()) {
    QComboBox::wheelEvent(event);
  } else {
    event->ignore();
  }
}

}  // namespace veltrix
