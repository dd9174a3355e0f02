#include "util/hyperlink_text.h"

#include <gtest/gtest.h>

#include <QFontDatabase>

#include "tests/support/widget_pixels.h"

namespace veltrix {
namespace {

TEST(Hyperlink, HasAllFiveAttributes) {
  const HyperlinkText link = makeHyperlink("Web site", false);
  EXPECT_EQ(link.text, "Web site");
  EXPECT_EQ(link.underline, 1);
  EXPECT_EQ(link.link, "Web site");
  EXPECT_EQ(link.font, QFontDatabase::systemFont(QFontDatabase::GeneralFont));
  EXPECT_EQ(link.color, QColor::fromRgbF(0.1F, 0.1F, 1.0F, 1.0F));
  EXPECT_EQ(link.paragraphStyle, QTextBlockFormat());
}

TEST(Hyperlink, TheAlternateOneIsRedAndElseTheSame) {
  const HyperlinkText link = makeHyperlink("Web site", true);
  EXPECT_EQ(link.color, QColor::fromRgbF(1.0F, 0.1F, 0.1F, 1.0F));
  EXPECT_EQ(link.underline, QTextCharFormat::SingleUnderline);
  EXPECT_EQ(link.link, "Web site");
  EXPECT_EQ(link.font, makeHyperlink("Web site", false).font);
  EXPECT_EQ(link.paragraphStyle, QTextBlockFormat());
}

TEST(Hyperlink, AnEmptyTextHasTheAttributesToo) {
  const HyperlinkText link = makeHyperlink("", false);
  EXPECT_EQ(link.underline, 1);
  EXPECT_EQ(link.color, makeHyperlink("Web site", false).color);
}

TEST(Hyperlink, FormatCarriesTheAttributesOfTheCharacters) {
  const QTextCharFormat format = makeHyperlink("Web site", false).format();
  EXPECT_EQ(format.underlineStyle(), QTextCharFormat::SingleUnderline);
  EXPECT_TRUE(format.isAnchor());
  EXPECT_EQ(format.anchorHref(), "Web site");
  EXPECT_EQ(format.foreground().color(), QColor::fromRgbF(0.1F, 0.1F, 1.0F));
}

TEST(ReadableColor, StaysWhereItCanBeRead) {
  for (const bool alternate : {false, true}) {
    const QColor color = makeHyperlink("x", alternate).color;
    EXPECT_EQ(readableOn(QColor(0xf2, 0xf3, 0xf5), color), color);
  }
}

TEST(ReadableColor, BlueIsLightenedInADarkWindowAndStaysBlue) {
  const QColor blue = makeHyperlink("x", false).color;
  const QColor ground(0x34, 0x37, 0x3b);
  const QColor shown = readableOn(ground, blue);
  EXPECT_LT(test::contrast(blue, ground), 3.0);
  EXPECT_GE(test::contrast(shown, ground), 4.5);
  EXPECT_EQ(shown.blueF(), 1.0F);
  EXPECT_LT(shown.redF(), 0.7F);
}

TEST(ReadableColor, IsFoundOnEveryGray) {
  for (int gray = 0; gray < 256; ++gray) {
    const QColor ground(gray, gray, gray);
    for (const bool alternate : {false, true}) {
      EXPECT_GE(test::contrast(readableOn(ground, makeHyperlink("x", alternate).color), ground), 3.0) << gray;
    }
  }
}

}  // namespace
}  // namespace veltrix
