#pragma once

#include <QColor>
#include <QFont>
#include <QString>
#include <QTextBlockFormat>
#include <QTextCharFormat>

namespace veltrix {

// A text with the attributes of a link. All five are always there.
struct HyperlinkText {
  QString text;
  QTextCharFormat::UnderlineStyle underline = QTextCharFormat::SingleUnderline;
  QString link;
  QFont font;
  QColor color;
  QTextBlockFormat paragraphStyle;

  // The attributes of the characters in one format, for a text document.
  QTextCharFormat format() const;
};

// `text` as a link to itself in the system's font: blue, or red when it is the alternate one.
HyperlinkText makeHyperlink(const QString& text, bool alternate);

// `color` when it can be read on `ground`, else the nearest tint or shade of it that can: blue as such drowns
// in a dark window.
QColor readableOn(const QColor& ground, const QColor& color);

}  // namespace veltrix
