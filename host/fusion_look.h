#pragma once

#include <QProxyStyle>

namespace veltrix {

// The toolkit's own style, mended where it is hard to see or looks out of place: empty boxes have a rim that
// stands out from dark windows, titles keep off the edges of their buttons, and the buttons of dialogs have
// no pictures.
class FusionLook : public QProxyStyle {
 public:
  FusionLook();
  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
  QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                         const QWidget* widget) const override;
  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* data) const override;
};

// Gives the application this style if it has the toolkit's own; those of desktops stay.
void mendFusion();

}  // namespace veltrix
