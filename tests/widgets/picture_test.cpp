#include "widgets/picture.h"

#include <gmock/gmock.h>

#include <QDir>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>

#include "tests/support/widget_pixels.h"

namespace veltrix {
namespace {

using test::pictureFolder;

QByteArray sourceOf(const QString& name) {
  QFile file(QDir(pictureFolder()).filePath(name + ".svg"));
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QImage drawn(const QString& name, const QPalette& palette, const QStringList& lit = {}) {
  Picture picture(pictureFolder(), name);
  QImage image(picture.size().toSize(), QImage::Format_RGB32);
  image.fill(palette.color(QPalette::Window));
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  picture.draw(painter, image.rect(), PictureColors::fromPalette(palette), lit);
  return image;
}

QStringList tintedPictures() {
  QStringList names{"no_device"};
  for (int tab = 2; tab <= 7; ++tab) {
    names << QStringLiteral("device_tab%1").arg(tab);
  }
  for (const char* product : {"1020", "2041", "1022", "2048", "8002"}) {
    names << QStringLiteral("strip_%1").arg(product);
  }
  for (int page = 0; page < 4; ++page) {
    names << QStringLiteral("scroll_direction_page%1_normal").arg(page)
          << QStringLiteral("scroll_direction_page%1_inverted").arg(page);
  }
  return names;
}

class EveryPicture : public ::testing::TestWithParam<QString> {};

TEST_P(EveryPicture, Loads) {
  const Picture picture(pictureFolder(), GetParam());
  EXPECT_FALSE(picture.isNull());
  EXPECT_FALSE(picture.size().isEmpty());
}

TEST_P(EveryPicture, UsesOnlyColoursThatThePaletteFillsIn) {
  static const QSet<QString> kStandIns{"#30343a", "#d8dce1", "#b4bac2", "#f4f6f8",
                                       "#5a8fc4", "#9dc1e4", "#1d74c9"};
  const QString source = sourceOf(GetParam());
  QRegularExpressionMatchIterator found = QRegularExpression("#[0-9a-fA-F]{3,8}").globalMatch(source);
  ASSERT_TRUE(found.hasNext());
  while (found.hasNext()) {
    const QString color = found.next().captured();
    EXPECT_TRUE(kStandIns.contains(color) || source.contains("url(" + color)) << color.toStdString();
  }
}

TEST_P(EveryPicture, HasOutlinesThatStandOutOnLightAndDarkWindows) {
  for (const QPalette& palette : {test::lightPalette(), test::darkPalette()}) {
    const QColor window = palette.color(QPalette::Window);
    EXPECT_GE(test::contrast(PictureColors::fromPalette(palette).line, window), 3.0);
    EXPECT_GE(test::shareAgainst(drawn(GetParam(), palette), window, 3.0), 0.02);
  }
}

TEST_P(EveryPicture, ChangesWithThePalette) {
  QPalette red = test::lightPalette();
  red.setColor(QPalette::Highlight, Qt::red);
  EXPECT_NE(drawn(GetParam(), test::lightPalette()), drawn(GetParam(), test::darkPalette()));
  EXPECT_NE(drawn(GetParam(), test::lightPalette()), drawn(GetParam(), red));
}

INSTANTIATE_TEST_SUITE_P(Picture, EveryPicture, ::testing::ValuesIn(tintedPictures()),
                         [](const auto& row) { return row.param.toStdString(); });

struct DeviceRow {
  const char* name;
  int buttons;
};

class DevicePicture : public ::testing::TestWithParam<DeviceRow> {};

TEST_P(DevicePicture, NamesEachButtonAndTheSpotThatItsLeaderLinePointsAt) {
  const Picture picture(pictureFolder(), GetParam().name);
  const QRectF whole(QPointF(), picture.size());
  for (int button = 0; button < 4; ++button) {
    const QRectF shape = picture.elementRect(QStringLiteral("button%1").arg(button));
    const QRectF anchor = picture.elementRect(QStringLiteral("anchor%1").arg(button));
    EXPECT_EQ(!shape.isEmpty(), button < GetParam().buttons) << button;
    EXPECT_EQ(!anchor.isNull(), button < GetParam().buttons) << button;
    if (button < GetParam().buttons) {
      EXPECT_TRUE(whole.contains(shape)) << button;
      EXPECT_TRUE(shape.contains(anchor.center())) << button;
    }
  }
}

TEST_P(DevicePicture, KeepsButtonsApart) {
  const Picture picture(pictureFolder(), GetParam().name);
  const QPalette palette = test::lightPalette();
  const QRgb accent = PictureColors::fromPalette(palette).accent.rgb();
  for (int button = 0; button < GetParam().buttons; ++button) {
    const QString id = QStringLiteral("button%1").arg(button);
    const QImage lit = drawn(GetParam().name, palette, {id});
    for (int other = 0; other < GetParam().buttons; ++other) {
      const QPointF spot = picture.elementRect(QStringLiteral("anchor%1").arg(other)).center();
      EXPECT_EQ(lit.pixel(spot.toPoint()) == accent, other == button) << button << " " << other;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Picture, DevicePicture,
                         ::testing::Values(DeviceRow{"device_tab2", 4}, DeviceRow{"device_tab3", 4},
                                           DeviceRow{"device_tab4", 4}, DeviceRow{"device_tab5", 2},
                                           DeviceRow{"device_tab6", 2}, DeviceRow{"device_tab7", 2}),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(Picture, DrawsTheInvertedDirectionDifferently) {
  for (int page = 0; page < 4; ++page) {
    const QString name = QStringLiteral("scroll_direction_page%1_").arg(page);
    EXPECT_NE(drawn(name + "normal", test::lightPalette()), drawn(name + "inverted", test::lightPalette()));
  }
}

TEST(Picture, KeepsTheIconsOwnColours) {
  EXPECT_FALSE(Picture(pictureFolder(), "icon").isNull());
  EXPECT_EQ(drawn("icon", test::lightPalette()).pixel(64, 70),
            drawn("icon", test::darkPalette()).pixel(64, 70));
}

TEST(Picture, IsNullForAMissingName) {
  Picture picture(pictureFolder(), "no_such_picture");
  EXPECT_TRUE(picture.isNull());
  EXPECT_FALSE(picture.hasElement("button0"));
  EXPECT_TRUE(picture.elementRect("button0").isNull());
  QImage image(10, 10, QImage::Format_RGB32);
  image.fill(Qt::white);
  QPainter painter(&image);
  picture.draw(painter, QRectF(0, 0, 10, 10), {});
  EXPECT_EQ(image.pixelColor(5, 5), QColor(Qt::white));
}

TEST(Picture, IsNullForABrokenFile) {
  const QTemporaryDir folder;
  QFile file(folder.filePath("broken.svg"));
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write("<svg viewBox=");
  file.close();
  EXPECT_TRUE(Picture(folder.path(), "broken").isNull());
}

TEST(Picture, ColoursThatItWasReadInAreReplacedByOthers) {
  const QPalette light = test::lightPalette();
  const QPalette dark = test::darkPalette();
  Picture picture(pictureFolder(), "device_tab2", PictureColors::fromPalette(dark));
  for (const QPalette& palette : {dark, light}) {
    QImage image(picture.size().toSize(), QImage::Format_RGB32);
    image.fill(palette.color(QPalette::Window));
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    picture.draw(painter, image.rect(), PictureColors::fromPalette(palette));
    painter.end();
    EXPECT_EQ(image, drawn("device_tab2", palette));
  }
}

TEST(Picture, DoesNotTintATintedColourAgain) {
  PictureColors colors = PictureColors::fromPalette(test::lightPalette());
  // The stand-in of another role, as a palette may well contain it.
  colors.body = QColor("#30343a");
  colors.line = Qt::green;
  Picture picture(pictureFolder(), "device_tab2");
  QImage image(picture.size().toSize(), QImage::Format_RGB32);
  image.fill(Qt::white);
  QPainter painter(&image);
  picture.draw(painter, image.rect(), colors);
  EXPECT_EQ(image.pixelColor(160, 230), QColor("#30343a"));
}

}  // namespace
}  // namespace veltrix
