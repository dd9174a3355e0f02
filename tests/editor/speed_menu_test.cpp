#include "editor/speed_menu.h"

#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QApplication>
#include <QPushButton>
#include <QVBoxLayout>
#include <QWheelEvent>

namespace veltrix {
namespace {

void turnWheel(QWidget& widget) {
  const QPointF spot = widget.rect().center();
  QWheelEvent turn(spot, widget.mapToGlobal(spot), {}, {0, -120}, Qt::NoButton, Qt::NoModifier,
                   Qt::NoScrollPhase, false);
  QApplication::sendEvent(&widget, &turn);
}

TEST(SpeedMenu, HasAnItemForEverySpeedOfTheWheel) {
  SpeedMenu menu;
  for (int amount = 1; amount <= 20; ++amount) {
    menu.selectTag(amount);
    EXPECT_EQ(menu.tag(), amount);
  }
}

TEST(SpeedMenu, SaysWhichEndIsSlowAndWhichIsFast) {
  SpeedMenu menu;
  EXPECT_EQ(menu.itemText(0), "1 per step (slow)");
  EXPECT_EQ(menu.itemText(1), "2 per step");
  EXPECT_EQ(menu.itemText(menu.count() - 1), "20 per step (fast)");
}

TEST(SpeedMenu, KeepsItsSelectionWithoutAnItemOfTheTag) {
  SpeedMenu menu;
  menu.selectTag(5);
  for (const std::int64_t tag : {std::int64_t{0}, std::int64_t{21}, std::int64_t{1} << 33}) {
    menu.selectTag(tag);
    EXPECT_EQ(menu.tag(), 5);
  }
}

TEST(SpeedMenu, TheListThatOpensBearsItsName) {
  SpeedMenu menu;
  menu.setAccessibleName("Speed");
  menu.showPopup();
  EXPECT_EQ(menu.view()->accessibleName(), "Speed");
  menu.hidePopup();
}

TEST(SpeedMenu, TurnsWithTheWheelOnlyWhileItHasTheFocus) {
  QWidget window;
  auto* rows = new QVBoxLayout(&window);
  auto* other = new QPushButton;
  auto* menu = new SpeedMenu;
  rows->addWidget(other);
  rows->addWidget(menu);
  window.show();
  QApplication::setActiveWindow(&window);
  other->setFocus();
  turnWheel(*menu);
  EXPECT_EQ(menu->tag(), 1);
  menu->setFocus();
  turnWheel(*menu);
  EXPECT_EQ(menu->tag(), 2);
}

}  // namespace
}  // namespace veltrix
