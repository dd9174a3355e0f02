#include "host/color_scheme.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QStyle>

#include "tests/support/widget_pixels.h"

namespace veltrix {
namespace {

TEST(ColorScheme, KnowsItsNames) {
  EXPECT_EQ(colorSchemeNamed(u"desktop"), ColorScheme::kDesktop);
  EXPECT_EQ(colorSchemeNamed(u"light"), ColorScheme::kLight);
  EXPECT_EQ(colorSchemeNamed(u"dark"), ColorScheme::kDark);
  EXPECT_EQ(colorSchemeNamed(u""), std::nullopt);
  EXPECT_EQ(colorSchemeNamed(u"Dark"), std::nullopt);
}

class NamedScheme : public ::testing::TestWithParam<ColorScheme> {};

TEST_P(NamedScheme, HasReadableTexts) {
  const QPalette palette = paletteFor(GetParam());
  const std::pair<QPalette::ColorRole, QPalette::ColorRole> pairs[] = {
      {QPalette::WindowText, QPalette::Window},
      {QPalette::Text, QPalette::Base},
      {QPalette::Text, QPalette::AlternateBase},
      {QPalette::ButtonText, QPalette::Button},
      {QPalette::HighlightedText, QPalette::Highlight},
      {QPalette::ToolTipText, QPalette::ToolTipBase},
      {QPalette::Link, QPalette::Window},
      {QPalette::LinkVisited, QPalette::Window},
      {QPalette::PlaceholderText, QPalette::Base},
  };
  for (const auto& [text, ground] : pairs) {
    EXPECT_GE(test::contrast(palette.color(text), palette.color(ground)), 4.5) << text << " on " << ground;
  }
}

TEST_P(NamedScheme, FadesTheTextsOfControlsThatAreOff) {
  const QPalette palette = paletteFor(GetParam());
  const QColor window = palette.color(QPalette::Window);
  const double off = test::contrast(palette.color(QPalette::Disabled, QPalette::WindowText), window);
  EXPECT_GE(off, 4);
  EXPECT_LT(off, test::contrast(palette.color(QPalette::Active, QPalette::WindowText), window) / 2);
}

TEST_P(NamedScheme, ReachesTheWidgets) {
  applyColorScheme(GetParam());
  const QWidget widget;
  EXPECT_EQ(widget.palette().color(QPalette::Window), paletteFor(GetParam()).color(QPalette::Window));
  EXPECT_EQ(QApplication::style()->name(), "fusion");
  applyColorScheme(ColorScheme::kDesktop);
  const QWidget other;
  EXPECT_EQ(other.palette().color(QPalette::Window), paletteFor(GetParam()).color(QPalette::Window));
}

INSTANTIATE_TEST_SUITE_P(ColorScheme, NamedScheme, ::testing::Values(ColorScheme::kLight, ColorScheme::kDark),
                         [](const auto& row) {
                           return std::string(row.param == ColorScheme::kDark ? "Dark" : "Light");
                         });

TEST(ColorScheme, TellsLightFromDark) {
  EXPECT_GT(paletteFor(ColorScheme::kLight).color(QPalette::Window).lightness(), 200);
  EXPECT_LT(paletteFor(ColorScheme::kDark).color(QPalette::Window).lightness(), 60);
}

}  // namespace
}  // namespace veltrix
