#pragma once

#include <QPalette>
#include <QStringView>
#include <optional>

namespace veltrix {

// Which colours the window takes.
enum class ColorScheme {
  kDesktop,  // what the desktop's theme gives
  kLight,
  kDark,
};

// The scheme of the name "desktop", "light" or "dark"; nothing for any other name.
std::optional<ColorScheme> colorSchemeNamed(QStringView name);

// The palette of a scheme that was asked for by name; every text in it has a contrast of at least 4.5 to 1.
QPalette paletteFor(ColorScheme scheme);

// Gives the application the colours of `scheme`, in a style that draws every control with them; kDesktop
// changes nothing.
void applyColorScheme(ColorScheme scheme);

}  // namespace veltrix
