#pragma once

#include <QByteArray>
#include <QColor>
#include <QPalette>
#include <QRectF>
#include <QString>
#include <QStringList>
#include <memory>

class QPainter;
class QSvgRenderer;

namespace veltrix {

// The colours that stand in the picture files for a role; each is replaced by a colour of the palette before
// drawing. They are chosen so that the files look sensible in any other viewer as well.
struct PictureColors {
  QColor line;    // #30343a: outlines and arrows
  QColor body;    // #d8dce1: the device's case
  QColor shade;   // #b4bac2: its darker parts and the shadow
  QColor button;  // #f4f6f8: a button that is not lit
  QColor ball;    // #5a8fc4: the ball
  QColor glow;    // #9dc1e4: the light on the ball
  QColor accent;  // #1d74c9: what the picture is about

  // The colours of a palette's active group; a disabled picture is shown by drawing it fainter.
  static PictureColors fromPalette(const QPalette& palette);

  friend bool operator==(const PictureColors&, const PictureColors&) = default;
};

// How strongly the picture of a disabled control is drawn.
inline constexpr double kDisabledPictureOpacity = 0.45;

// The folder with the pictures of the program's bundle.
QString standardPictureFolder();

// One SVG picture whose colours follow the palette. Not copyable; draws nothing and has an empty size when
// the file is missing or broken.
class Picture {
 public:
  Picture();
  // Drawn first in `colors`, it needs to be read only once.
  Picture(const QString& folder, const QString& name, const PictureColors& colors = {});
  ~Picture();
  Picture(Picture&&) noexcept;
  Picture& operator=(Picture&&) noexcept;

  bool isNull() const { return fSource.isEmpty(); }
  QSizeF size() const { return fSize; }

  // Draws into `target`, stretching when its proportions differ. The elements named in `lit` (ids of buttons)
  // take the accent colour.
  void draw(QPainter& painter, const QRectF& target, const PictureColors& colors,
            const QStringList& lit = {});

  bool hasElement(const QString& id) const;

  // Where the element lies, in the picture's own units; empty when there is none of that id. Neither the
  // element nor anything around it may carry a transformation.
  QRectF elementRect(const QString& id) const;

 private:
  QByteArray tinted(const PictureColors& colors, const QStringList& lit) const;
  void prepare(const PictureColors& colors, const QStringList& lit);

  QByteArray fSource;
  QSizeF fSize;
  std::unique_ptr<QSvgRenderer> fRenderer;
  PictureColors fColors;
  QStringList fLit;
};

}  // namespace veltrix
