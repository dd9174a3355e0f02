#include "widgets/button_picture.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QComboBox>
#include <QEnterEvent>
#include <QMouseEvent>

#include "tests/support/widget_pixels.h"

namespace veltrix {
namespace {

class ButtonPictureTest : public ::testing::Test {
 protected:
  ButtonPictureTest() {
    fPicture.setFolder(test::pictureFolder());
    fPicture.setPalette(test::lightPalette());
  }

  void fill(const QString& name, const QList<int>& numbers) {
    fPicture.setPicture(name);
    for (const int number : numbers) {
      auto* menu = new QComboBox;
      menu->addItems({"Click", "Scroll"});
      fPicture.addCallout(number, menu);
      fMenus.insert(number, menu);
    }
    show(QSize(760, 420));
  }

  // A widget that was never shown does not lay its children out.
  void show(const QSize& size) {
    fPicture.resize(size);
    fPicture.show();
    QApplication::setActiveWindow(&fPicture);
    QCoreApplication::processEvents();
  }

  ButtonPicture fPicture;
  QHash<int, QComboBox*> fMenus;
};

TEST_F(ButtonPictureTest, PutsEachControlBelowItsCaption) {
  fill("device_tab2", {0, 1, 2, 3, 8, 9});
  EXPECT_EQ(fPicture.callouts(), (QList<int>{0, 1, 2, 3, 8, 9}));
  for (const int number : fPicture.callouts()) {
    EXPECT_EQ(fPicture.controlRect(number), fMenus[number]->geometry());
    EXPECT_LT(fPicture.captionRect(number).bottom(), fPicture.controlRect(number).top());
  }
  EXPECT_TRUE(fPicture.captionRect(7).isEmpty());
  EXPECT_TRUE(fPicture.controlRect(7).isEmpty());
}

TEST_F(ButtonPictureTest, PlacesWhatCameWhileItWasHidden) {
  fill("device_tab2", {0, 1});
  fPicture.hide();
  fPicture.addCallout(2);
  fPicture.show();
  const QRect shown = fPicture.captionRect(2);
  QEvent placeAgain(QEvent::LayoutRequest);
  QCoreApplication::sendEvent(&fPicture, &placeAgain);
  EXPECT_EQ(shown, fPicture.captionRect(2));
}

TEST_F(ButtonPictureTest, PutsLeftButtonsLeftAndChordsAboveOrBelow) {
  fill("device_tab3", {0, 1, 2, 3, 8, 9});
  const QRectF picture = fPicture.pictureRect();
  for (const int left : {0, 2}) {
    EXPECT_LT(fPicture.controlRect(left).right(), picture.left());
    EXPECT_GT(fPicture.controlRect(left + 1).left(), picture.right());
  }
  EXPECT_GT(fPicture.captionRect(8).top(), picture.bottom());
  EXPECT_LT(fPicture.controlRect(9).bottom(), picture.top());
}

TEST_F(ButtonPictureTest, LeadsALineFromEachControlToItsButton) {
  fill("device_tab6", {0, 1, 8});
  for (const int button : {0, 1}) {
    const QPainterPath line = fPicture.leaderLine(button);
    EXPECT_TRUE(
        fPicture.elementRect(QStringLiteral("button%1").arg(button)).contains(line.currentPosition()));
    EXPECT_TRUE(
        fPicture.controlRect(button).adjusted(-6, -6, 6, 6).contains(line.pointAtPercent(0).toPoint()));
  }
  const QRectF bracket = fPicture.leaderLine(8).boundingRect();
  EXPECT_TRUE(bracket.adjusted(-1, -1, 1, 1).contains(fPicture.elementRect("anchor0").center()));
  EXPECT_TRUE(bracket.adjusted(-1, -1, 1, 1).contains(fPicture.elementRect("anchor1").center()));
  EXPECT_TRUE(fPicture.leaderLine(9).isEmpty());
}

TEST_F(ButtonPictureTest, NamesControlsAndTiesCaptionsToThem) {
  fill("device_tab5", {0, 1, 8});
  EXPECT_EQ(fMenus[8]->accessibleName(), "Buttons 1 and 2 together");
  const auto labels = fPicture.findChildren<QLabel*>();
  ASSERT_EQ(labels.size(), 3);
  EXPECT_EQ(labels[0]->buddy(), fMenus[0]);
}

TEST_F(ButtonPictureTest, LightsTheButtonsOfTheFocusedControl) {
  fill("device_tab2", {0, 1, 2, 3, 8, 9});
  fMenus[2]->setFocus();
  QCoreApplication::processEvents();
  EXPECT_EQ(fPicture.lit(), QStringList{"button2"});
  fMenus[8]->setFocus();
  QCoreApplication::processEvents();
  EXPECT_EQ(fPicture.lit(), (QStringList{"button0", "button1"}));
  fMenus[8]->clearFocus();
  QCoreApplication::processEvents();
  EXPECT_TRUE(fPicture.lit().isEmpty());
}

TEST_F(ButtonPictureTest, LightsTheButtonsOfTheControlUnderTheMouseUntilSomethingTakesItAway) {
  fill("device_tab2", {0, 1, 2, 3, 8, 9});
  const auto lit = [this](QEvent&& event) {
    QCoreApplication::sendEvent(fMenus[3], &event);
    QCoreApplication::processEvents();
    return fPicture.lit().contains("button3");
  };
  for (const auto end : {QEvent::Leave, QEvent::WindowDeactivate}) {
    EXPECT_TRUE(lit(QEnterEvent(QPointF(2, 2), QPointF(2, 2), QPointF(2, 2))));
    EXPECT_FALSE(lit(QEvent(end))) << end;
    EXPECT_FALSE(fMenus[3]->underMouse()) << end;
  }
}

TEST_F(ButtonPictureTest, GivesTheFocusToTheControlOfAClickedButton) {
  fill("device_tab7", {0, 1, 8});
  const QPointF spot = fPicture.elementRect("anchor1").center();
  QMouseEvent press(QEvent::MouseButtonPress, spot, fPicture.mapToGlobal(spot), Qt::LeftButton,
                    Qt::LeftButton, Qt::NoModifier);
  QCoreApplication::sendEvent(&fPicture, &press);
  EXPECT_TRUE(fMenus[1]->hasFocus());
}

TEST_F(ButtonPictureTest, AdoptsChildrenThatCarryANumber) {
  fPicture.setPicture("device_tab7");
  auto* menu = new QComboBox(&fPicture);
  menu->setProperty("callout", 1);
  auto* stranger = new QComboBox(&fPicture);
  stranger->setGeometry(0, 0, 20, 20);
  show(QSize(760, 420));
  EXPECT_EQ(fPicture.callouts(), QList<int>{1});
  EXPECT_EQ(fPicture.controlRect(1), menu->geometry());
  EXPECT_EQ(stranger->geometry(), QRect(0, 0, 20, 20));
}

TEST_F(ButtonPictureTest, ForgetsAControlThatGoes) {
  fill("device_tab7", {0, 1, 8});
  delete fMenus[0];
  show(QSize(700, 400));
  EXPECT_TRUE(fPicture.controlRect(0).isEmpty());
  EXPECT_FALSE(fPicture.captionRect(0).isEmpty());
}

TEST_F(ButtonPictureTest, ReplacesTheControlOfANumber) {
  fill("device_tab7", {0, 0});
  EXPECT_EQ(fPicture.callouts(), QList<int>{0});
  EXPECT_EQ(fPicture.controlRect(0), fMenus[0]->geometry());
}

TEST_F(ButtonPictureTest, IsAGroupToAssistiveTechnology) {
  QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(&fPicture);
  ASSERT_NE(accessible, nullptr);
  EXPECT_EQ(accessible->role(), QAccessible::Grouping);
}

TEST_F(ButtonPictureTest, HasRoomForEveryControlAtItsSmallestSize) {
  fill("device_tab2", {0, 1, 2, 3, 8, 9});
  show(fPicture.minimumSizeHint());
  for (const int number : fPicture.callouts()) {
    EXPECT_GE(fPicture.controlRect(number).width(), fMenus[number]->sizeHint().width()) << number;
    EXPECT_TRUE(fPicture.rect().contains(fPicture.controlRect(number))) << number;
  }
  EXPECT_GE(fPicture.pictureRect().height(), 100);
}

}  // namespace
}  // namespace veltrix
