#include "widgets/picture_icon.h"

#include <gtest/gtest.h>

#include <QGuiApplication>

#include "tests/support/widget_pixels.h"

namespace veltrix {
namespace {

QImage onWindow(const QIcon& icon, int side, QIcon::Mode mode = QIcon::Normal) {
  QImage image(side, side, QImage::Format_RGB32);
  image.fill(QGuiApplication::palette().color(QPalette::Window));
  QPainter painter(&image);
  icon.paint(&painter, image.rect(), Qt::AlignCenter, mode);
  return image;
}

class PictureIconTest : public ::testing::Test {
 protected:
  PictureIconTest() { QGuiApplication::setPalette(test::lightPalette()); }
  void TearDown() override { QGuiApplication::setPalette(QPalette()); }

  QIcon fIcon = pictureIcon("strip_2048", test::pictureFolder());
};

TEST_F(PictureIconTest, IsLegibleAtTheSizeOfTheStrip) {
  const QColor window = test::lightPalette().color(QPalette::Window);
  EXPECT_GE(test::shareAgainst(onWindow(fIcon, 64), window, 3.0), 0.1);
}

TEST_F(PictureIconTest, FollowsTheApplicationsPalette) {
  const QImage light = onWindow(fIcon, 64);
  QGuiApplication::setPalette(test::darkPalette());
  const QImage dark = onWindow(fIcon, 64);
  EXPECT_NE(light, dark);
  EXPECT_GE(test::shareAgainst(dark, test::darkPalette().color(QPalette::Window), 3.0), 0.1);
}

TEST_F(PictureIconTest, IsFainterWhenDisabled) {
  const QColor window = test::lightPalette().color(QPalette::Window);
  EXPECT_LT(test::shareAgainst(onWindow(fIcon, 64, QIcon::Disabled), window, 3.0),
            test::shareAgainst(onWindow(fIcon, 64), window, 3.0) / 2);
}

TEST_F(PictureIconTest, NeverMakesAHugePixmap) {
  EXPECT_LE(fIcon.pixmap(QSize(100000, 100000), 1.0).width(), 1024);
}

TEST_F(PictureIconTest, IsNullForAMissingPicture) {
  EXPECT_TRUE(pictureIcon("no_such_picture", test::pictureFolder()).isNull());
}

}  // namespace
}  // namespace veltrix
