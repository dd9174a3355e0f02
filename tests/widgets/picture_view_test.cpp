#include "widgets/picture_view.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <QAccessible>
#include <QApplication>

#include "tests/support/widget_pixels.h"

namespace veltrix {
namespace {

using test::shot;

class PictureViewTest : public ::testing::Test {
 protected:
  PictureViewTest() {
    fView.setFolder(test::pictureFolder());
    fView.setPicture("device_tab2");
    fView.setPalette(test::lightPalette());
    fView.resize(320, 280);
  }

  PictureView fView;
};

TEST_F(PictureViewTest, KeepsTheProportionsInTheMiddleOfItsRoom) {
  fView.resize(1000, 140);
  EXPECT_EQ(fView.pictureRect().size(), QSizeF(160, 140));
  EXPECT_NEAR(fView.pictureRect().center().x(), 500, 1);
  fView.resize(160, 1000);
  EXPECT_EQ(fView.pictureRect().size(), QSizeF(160, 140));
}

TEST_F(PictureViewTest, MapsElementsIntoWidgetCoordinates) {
  const QRectF small = fView.elementRect("button0");
  ASSERT_FALSE(small.isEmpty());
  fView.resize(640, 560);
  const QRectF large = fView.elementRect("button0");
  EXPECT_NEAR(large.width(), small.width() * 2, 0.01);
  EXPECT_NEAR(large.x() - fView.pictureRect().x(), (small.x()) * 2, 1.0);
  EXPECT_TRUE(fView.elementRect("button7").isEmpty());
}

TEST_F(PictureViewTest, FollowsThePalette) {
  const QImage light = shot(fView);
  fView.setPalette(test::darkPalette());
  const QImage dark = shot(fView);
  EXPECT_GT(test::shareAgainst(light, QColor(0xef, 0xef, 0xef), 3.0), 0.02);
  EXPECT_GT(test::shareAgainst(dark, QColor(0x2b, 0x2d, 0x30), 3.0), 0.02);
  fView.setPalette(test::lightPalette());
  EXPECT_EQ(shot(fView), light);
}

TEST_F(PictureViewTest, IsFainterWhenDisabled) {
  for (const QPalette& palette : {test::lightPalette(), test::darkPalette()}) {
    fView.setPalette(palette);
    const QColor window = palette.color(QPalette::Active, QPalette::Window);
    const auto strongest = [&] {
      const QImage image = shot(fView);
      double most = 0;
      for (int x = 0; x < image.width(); ++x) {
        most = std::max(most, test::contrast(image.pixelColor(x, 140), window));
      }
      return most;
    };
    fView.setEnabled(true);
    const double enabled = strongest();
    fView.setEnabled(false);
    EXPECT_LT(strongest(), enabled * 0.7);
    EXPECT_GT(strongest(), 1.5);
  }
}

TEST_F(PictureViewTest, LightsAnElementUp) {
  const QPoint spot = fView.elementRect("anchor1").center().toPoint();
  const QColor before = shot(fView).pixelColor(spot);
  fView.setLit({"button1"});
  EXPECT_EQ(shot(fView).pixelColor(spot), test::lightPalette().color(QPalette::Highlight));
  fView.setLit({});
  EXPECT_EQ(shot(fView).pixelColor(spot), before);
}

// Registered a second time with a scale factor of 2, where a stretched picture would be blurred at every
// edge.
TEST_F(PictureViewTest, HasThePixelsOfTheScreen) {
  const QImage shown = fView.grab().toImage().convertToFormat(QImage::Format_RGB32);
  ASSERT_EQ(shown.size(), (QSizeF(320, 280) * fView.devicePixelRatioF()).toSize());
  QImage wanted(shown.size(), QImage::Format_RGB32);
  wanted.fill(fView.palette().color(QPalette::Window));
  Picture picture(test::pictureFolder(), "device_tab2");
  QPainter painter(&wanted);
  painter.setRenderHint(QPainter::Antialiasing);
  picture.draw(painter, wanted.rect(), PictureColors::fromPalette(fView.palette()));
  painter.end();
  int different = 0;
  for (int y = 0; y < wanted.height(); ++y) {
    for (int x = 0; x < wanted.width(); ++x) {
      different += std::abs(qGray(shown.pixel(x, y)) - qGray(wanted.pixel(x, y))) > 8 ? 1 : 0;
    }
  }
  EXPECT_LT(different, wanted.width() * wanted.height() / 500);
}

TEST_F(PictureViewTest, DrawsNothingWithoutAPicture) {
  fView.setPicture("no_such_picture");
  EXPECT_TRUE(fView.pictureRect().isEmpty());
  EXPECT_TRUE(fView.sizeHint().isValid());
  const QImage image = shot(fView);
  EXPECT_EQ(test::shareAgainst(image, image.pixelColor(0, 0), 1.01), 0.0);
}

TEST_F(PictureViewTest, WantsTheSameSizeWhateverThePicture) {
  const QSize wanted = fView.sizeHint();
  fView.setPicture("no_such_picture");
  EXPECT_EQ(fView.sizeHint(), wanted);
}

TEST_F(PictureViewTest, NeedsLittleMemoryForAHugeWidget) {
  const auto peak = [] {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;  // KiB
  };
  fView.resize(30000, 26000);
  QImage corner(64, 64, QImage::Format_RGB32);
  const long before = peak();
  fView.render(&corner, QPoint(), QRegion(0, 0, 64, 64), QWidget::DrawChildren);
  EXPECT_LT(peak() - before, 64 * 1024);
}

TEST_F(PictureViewTest, IsAGraphicToAssistiveTechnology) {
  fView.setAccessibleName("Crest Pointer");
  QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(&fView);
  ASSERT_NE(accessible, nullptr);
  EXPECT_EQ(accessible->role(), QAccessible::Graphic);
  EXPECT_EQ(accessible->text(QAccessible::Name), "Crest Pointer");
}

}  // namespace
}  // namespace veltrix
