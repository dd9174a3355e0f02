#include "util/hyperlink_text.h"

#include <QFontDatabase>
#include <algorithm>
#include <cmath>

namespace veltrix {

namespace {

constexpr double kEnough = 3.0;      // contrast that lets a color stand as it is
constexpr double kEasilyRead = 4.5;  // contrast of one that had to be changed
constexpr int kSteps = 50;

// Relative luminance, 0 to 1.
double luminance(const QColor& color) {
  const auto linear = [](double part) {
    return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

// 1 (alike) to 21 (black on white).
double contrast(const QColor& one, const QColor& other) {
  const double a = luminance(one);
  const double b = luminance(other);
  return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

QColor mixed(const QColor& from, const QColor& to, float share) {
  const auto part = [share](float a, float b) { return a + (b - a) * share; };
  return QColor::fromRgbF(part(from.redF(), to.redF()), part(from.greenF(), to.greenF()),
                          part(from.blueF(), to.blueF()));
}

}  // namespace

QTextCharFormat HyperlinkText::format() const {
  QTextCharFormat format;
  format.setFont(font);
  format.setUnderlineStyle(underline);
  format.setAnchor(true);
  format.setAnchorHref(link);
  format.setForeground(color);
  return format;
}

HyperlinkText makeHyperlink(const QString& text, bool alternate) {
  HyperlinkText hyperlink;
  hyperlink.text = text;
  hyperlink.link = text;
  hyperlink.font = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
  hyperlink.color = alternate ? QColor::fromRgbF(1.0F, 0.1F, 0.1F) : QColor::fromRgbF(0.1F, 0.1F, 1.0F);
  return hyperlink;
}

QColor readableOn(const QColor& ground, const QColor& color) {
  if (contrast(color, ground) >= kEnough) {
    return color;
  }
  const QColor end = contrast(Qt::white, ground) > contrast(Qt::black, ground) ? Qt::white : Qt::black;
  for (int step = 1; step < kSteps; ++step) {
    const QColor tried = mixed(color, end, static_cast<float>(step) / kSteps);
    if (contrast(tried, ground) >= kEasilyRead) {
      return tried;
    }
  }
  return end;
}

}  // namespace veltrix
