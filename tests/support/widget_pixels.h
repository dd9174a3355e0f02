#pragma once

#include <QColor>
#include <QImage>
#include <QPainter>
#include <QPalette>
#include <QString>
#include <QWidget>
#include <algorithm>
#include <cmath>

namespace veltrix::test {

// The pictures of the build tree's bundle.
inline QString pictureFolder() {
  return qEnvironmentVariable("VELTRIX_RESOURCES") + QStringLiteral("/pictures");
}

inline QPalette lightPalette() {
  QPalette palette(QColor(0xef, 0xef, 0xef));
  palette.setColor(QPalette::Highlight, QColor(0x30, 0x8c, 0xc6));
  return palette;
}

inline QPalette darkPalette() {
  QPalette palette(QColor(0x2b, 0x2d, 0x30));
  palette.setColor(QPalette::Highlight, QColor(0x3d, 0x8e, 0xe0));
  return palette;
}

// Relative luminance as the web's accessibility guidelines define it, 0 to 1.
inline double luminance(const QColor& color) {
  const auto linear = [](double channel) {
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

// 1 (alike) to 21 (black on white).
inline double contrast(const QColor& one, const QColor& other) {
  const double a = luminance(one);
  const double b = luminance(other);
  return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

// The widget as it looks on a window of its palette.
inline QImage shot(QWidget& widget) {
  QImage image(widget.size(), QImage::Format_RGB32);
  image.fill(widget.palette().color(QPalette::Active, QPalette::Window));
  widget.render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
  return image;
}

// The share of pixels, 0 to 1, whose contrast to `ground` is at least `least`.
inline double shareAgainst(const QImage& image, const QColor& ground, double least) {
  int count = 0;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      count += contrast(image.pixelColor(x, y), ground) >= least ? 1 : 0;
    }
  }
  return static_cast<double>(count) / (image.width() * image.height());
}

// The pixel within one of `spot` that stands out most against `ground`; thin lines rarely lie on whole
// pixels.
inline QColor strongestNear(const QImage& image, const QPointF& spot, const QColor& ground) {
  QColor strongest = ground;
  for (int y = -1; y <= 1; ++y) {
    for (int x = -1; x <= 1; ++x) {
      const QColor color = image.pixelColor(spot.toPoint() + QPoint(x, y));
      strongest = contrast(color, ground) > contrast(strongest, ground) ? color : strongest;
    }
  }
  return strongest;
}

}  // namespace veltrix::test
