#include "host/color_scheme.h"

#include <QApplication>
#include <QStyle>
#include <array>
#include <utility>

namespace veltrix {
namespace {

using Role = std::pair<QPalette::ColorRole, QRgb>;

constexpr std::array<Role, 18> kDarkColors{{
    {QPalette::Window, 0xff34373b},
    {QPalette::WindowText, 0xffeceef0},
    {QPalette::Base, 0xff1a1c1e},
    {QPalette::AlternateBase, 0xff222427},
    {QPalette::Text, 0xffeceef0},
    {QPalette::PlaceholderText, 0xff9a9fa5},
    {QPalette::Button, 0xff3d4146},
    {QPalette::ButtonText, 0xffeceef0},
    {QPalette::BrightText, 0xffffffff},
    {QPalette::ToolTipBase, 0xff3d4146},
    {QPalette::ToolTipText, 0xffeceef0},
    {QPalette::Highlight, 0xff2f78c4},
    {QPalette::HighlightedText, 0xffffffff},
    {QPalette::Link, 0xff6cb0f5},
    {QPalette::LinkVisited, 0xffb99cf0},
    {QPalette::Light, 0xff4b4f54},
    {QPalette::Dark, 0xff1a1b1d},
    {QPalette::Mid, 0xff2b2e31},
}};

constexpr std::array<Role, 18> kLightColors{{
    {QPalette::Window, 0xfff2f3f5},
    {QPalette::WindowText, 0xff1c1e21},
    {QPalette::Base, 0xffffffff},
    {QPalette::AlternateBase, 0xfff6f7f9},
    {QPalette::Text, 0xff1c1e21},
    {QPalette::PlaceholderText, 0xff6b7178},
    {QPalette::Button, 0xfff2f3f5},
    {QPalette::ButtonText, 0xff1c1e21},
    {QPalette::BrightText, 0xffffffff},
    {QPalette::ToolTipBase, 0xffffffff},
    {QPalette::ToolTipText, 0xff1c1e21},
    {QPalette::Highlight, 0xff1f6fbf},
    {QPalette::HighlightedText, 0xffffffff},
    {QPalette::Link, 0xff1a5fa8},
    {QPalette::LinkVisited, 0xff6a3fb0},
    {QPalette::Light, 0xffffffff},
    {QPalette::Dark, 0xffa3a8ae},
    {QPalette::Mid, 0xffc4c8cd},
}};

// Text of a control that is off is still to be read, just not to be noticed.
void fadeDisabled(QPalette* palette) {
  const QColor window = palette->color(QPalette::Active, QPalette::Window);
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
    const QColor text = palette->color(QPalette::Active, role);
    const auto faded = [](int a, int b) { return (3 * a + 2 * b) / 5; };
    palette->setColor(QPalette::Disabled, role,
                      QColor(faded(text.red(), window.red()), faded(text.green(), window.green()),
                             faded(text.blue(), window.blue())));
  }
  palette->setColor(QPalette::Disabled, QPalette::Highlight, palette->color(QPalette::Active, QPalette::Mid));
}

}  // namespace

std::optional<ColorScheme> colorSchemeNamed(QStringView name) {
  if (name == QLatin1String("desktop")) {
    return ColorScheme::kDesktop;
  }
  if (name == QLatin1String("light")) {
    return ColorScheme::kLight;
  }
  if (name == QLatin1String("dark")) {
    return ColorScheme::kDark;
  }
  return std::nullopt;
}

QPalette paletteFor(ColorScheme scheme) {
  if (scheme == ColorScheme::kDesktop) {
    return {};
  }
  QPalette palette;
  for (const auto& [role, color] : scheme == ColorScheme::kDark ? kDarkColors : kLightColors) {
    palette.setColor(role, QColor(color));
  }
  fadeDisabled(&palette);
  return palette;
}

void applyColorScheme(ColorScheme scheme) {
  if (scheme == ColorScheme::kDesktop) {
    return;
  }
  QApplication::setStyle(QStringLiteral("fusion"));
  QApplication::setPalette(paletteFor(scheme));
}

}  // namespace veltrix
