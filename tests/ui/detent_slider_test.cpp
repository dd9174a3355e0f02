#include "pane/detent_slider.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QSignalSpy>
#include <QStyleOptionSlider>
#include <QTest>
#include <QVBoxLayout>
#include <QWheelEvent>

#include "pane/slider_positions.h"

namespace veltrix {
namespace {

class DetentSliderTest : public ::testing::Test {
 public:
  DetentSliderTest() {
    auto* layout = new QVBoxLayout(&fWindow);
    layout->addWidget(&fOther);
    layout->addWidget(&fSlider);
    fOther.setFocusPolicy(Qt::StrongFocus);
    fSlider.setDetents({0, 5, 7, 9, 50, 100});
    fWindow.resize(400, 100);
    fWindow.show();
    fWindow.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&fWindow));
  }

  ~DetentSliderTest() override {
    fOther.setParent(nullptr);
    fSlider.setParent(nullptr);
  }

 protected:
  // True when the slider has taken the notch.
  bool turnWheel(int angle) {
    const QPointF middle = fSlider.rect().center();
    QWheelEvent event(middle, fSlider.mapToGlobal(middle), QPoint(), QPoint(0, angle), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&fSlider, &event);
    return event.isAccepted();
  }

  QRect handle() {
    QStyleOptionSlider option;
    option.initFrom(&fSlider);
    option.orientation = fSlider.orientation();
    option.minimum = fSlider.minimum();
    option.maximum = fSlider.maximum();
    option.sliderPosition = fSlider.sliderPosition();
    option.sliderValue = fSlider.value();
    option.upsideDown = fSlider.invertedAppearance();
    return fSlider.style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, &fSlider);
  }

  QWidget fWindow;
  QWidget fOther;
  DetentSlider fSlider;
};

TEST_F(DetentSliderTest, ArrowKeysGoFromDetentToDetent) {
  fSlider.setFocus();
  fSlider.showPosition(5);
  QTest::keyClick(&fSlider, Qt::Key_Right);
  EXPECT_EQ(fSlider.value(), 7);
  QTest::keyClick(&fSlider, Qt::Key_Left);
  QTest::keyClick(&fSlider, Qt::Key_Left);
  EXPECT_EQ(fSlider.value(), 0);
}

TEST_F(DetentSliderTest, PageKeysMoveAtLeastOneDetent) {
  fSlider.setFocus();
  fSlider.setPageStep(10);
  fSlider.showPosition(50);
  QTest::keyClick(&fSlider, Qt::Key_PageUp);
  EXPECT_EQ(fSlider.value(), 100);
  QTest::keyClick(&fSlider, Qt::Key_PageDown);
  EXPECT_EQ(fSlider.value(), 50);
}

TEST_F(DetentSliderTest, AnInvertedSliderKeepsItsKeysOnTheSideWhereTheyLead) {
  fSlider.setInvertedAppearance(true);
  fSlider.setInvertedControls(true);
  fSlider.setFocus();
  fSlider.showPosition(7);
  const int before = handle().center().x();
  QTest::keyClick(&fSlider, Qt::Key_Right);
  EXPECT_EQ(fSlider.value(), 5);
  EXPECT_GT(handle().center().x(), before);
  QTest::keyClick(&fSlider, Qt::Key_Home);
  EXPECT_EQ(fSlider.value(), 100);
  QTest::keyClick(&fSlider, Qt::Key_End);
  EXPECT_EQ(fSlider.value(), 0);
}

TEST_F(DetentSliderTest, DraggingRestsOnDetentsOnly) {
  fSlider.showPosition(0);
  QSignalSpy moved(&fSlider, &QSlider::valueChanged);
  const QPoint start = handle().center();
  QTest::mousePress(&fSlider, Qt::LeftButton, Qt::NoModifier, start);
  for (int x = start.x(); x < fSlider.width(); x += 3) {
    QTest::mouseMove(&fSlider, QPoint(x, start.y()));
    EXPECT_THAT(fSlider.detents(), ::testing::Contains(fSlider.value()));
  }
  QTest::mouseRelease(&fSlider, Qt::LeftButton, Qt::NoModifier, QPoint(fSlider.width() - 1, start.y()));
  EXPECT_EQ(fSlider.value(), 100);
  EXPECT_GE(moved.count(), 2);
}

TEST_F(DetentSliderTest, TheWheelOverAnUnfocusedSliderIsLeftToThePage) {
  fOther.setFocus();
  fSlider.showPosition(7);
  EXPECT_FALSE(turnWheel(120));
  EXPECT_EQ(fSlider.value(), 7);
}

TEST_F(DetentSliderTest, TheWheelMovesAFocusedSliderOneDetentANotch) {
  fSlider.setFocus();
  fSlider.showPosition(7);
  EXPECT_TRUE(turnWheel(120));
  EXPECT_EQ(fSlider.value(), 9);
  EXPECT_TRUE(turnWheel(-240));
  EXPECT_EQ(fSlider.value(), 5);
}

TEST_F(DetentSliderTest, PartsOfANotchAddUp) {
  fSlider.setFocus();
  fSlider.showPosition(5);
  turnWheel(60);
  EXPECT_EQ(fSlider.value(), 5);
  turnWheel(60);
  EXPECT_EQ(fSlider.value(), 7);
}

TEST_F(DetentSliderTest, ShowingAPositionSendsNoSignal) {
  QSignalSpy moved(&fSlider, &QSlider::valueChanged);
  fSlider.showPosition(50);
  fSlider.setDetents({60, 70});
  EXPECT_EQ(fSlider.value(), 60);
  EXPECT_EQ(moved.count(), 0);
}

}  // namespace
}  // namespace veltrix
