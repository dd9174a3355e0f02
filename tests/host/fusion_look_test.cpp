#include "host/fusion_look.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDialogButtonBox>
#include <QPainter>
#include <QPushButton>
#include <QStyleFactory>
#include <QStyleOption>

#include "host/color_scheme.h"
#include "tests/support/widget_pixels.h"

namespace veltrix {
namespace {

class FusionLookTest : public ::testing::Test {
 protected:
  void TearDown() override { QApplication::setStyle(QStringLiteral("fusion")); }

  // The greatest contrast to the window's ground that an empty indicator has anywhere.
  static double contrastOf(QStyle::PrimitiveElement indicator, ColorScheme colors) {
    QStyleOptionButton option;
    option.palette = paletteFor(colors);
    option.rect = QRect(0, 0, 16, 16);
    option.state = QStyle::State_Enabled | QStyle::State_Off;
    const QColor ground = option.palette.color(QPalette::Window);
    QImage image(16, 16, QImage::Format_RGB32);
    image.fill(ground);
    QPainter painter(&image);
    QApplication::style()->drawPrimitive(indicator, &option, &painter);
    painter.end();
    double greatest = 1;
    for (int i = 0; i < 16 * 16; ++i) {
      greatest = std::max(greatest, test::contrast(image.pixelColor(i % 16, i / 16), ground));
    }
    return greatest;
  }
};

TEST_F(FusionLookTest, EmptyBoxesStandOutFromDarkWindows) {
  mendFusion();
  for (const auto indicator : {QStyle::PE_IndicatorCheckBox, QStyle::PE_IndicatorRadioButton}) {
    EXPECT_GE(contrastOf(indicator, ColorScheme::kDark), 3);
  }
}

TEST_F(FusionLookTest, LeavesLightBoxesAsTheyAre) {
  QApplication::setStyle(QStringLiteral("fusion"));
  const double before = contrastOf(QStyle::PE_IndicatorCheckBox, ColorScheme::kLight);
  mendFusion();
  EXPECT_EQ(contrastOf(QStyle::PE_IndicatorCheckBox, ColorScheme::kLight), before);
}

TEST_F(FusionLookTest, TitlesKeepOffTheEdgesOfTheirButtons) {
  mendFusion();
  const QPushButton button(QStringLiteral("A title that is longer than most"));
  const int title = button.fontMetrics().horizontalAdvance(button.text());
  EXPECT_GE(button.sizeHint().width() - title, 2 * button.fontMetrics().averageCharWidth());
}

TEST_F(FusionLookTest, ButtonsOfDialogsHaveNoPictures) {
  mendFusion();
  const QDialogButtonBox box(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
  EXPECT_TRUE(box.button(QDialogButtonBox::Cancel)->icon().isNull());
}

TEST_F(FusionLookTest, TheStyleOfADesktopStays) {
  QStyle* const other = QStyleFactory::create(QStringLiteral("windows"));
  QApplication::setStyle(other);
  mendFusion();
  EXPECT_EQ(QApplication::style(), other);
}

TEST_F(FusionLookTest, IsMendedOnce) {
  mendFusion();
  const QStyle* const mended = QApplication::style();
  mendFusion();
  EXPECT_EQ(QApplication::style(), mended);
}

}  // namespace
}  // namespace veltrix
