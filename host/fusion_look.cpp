#include "host/fusion_look.h"

#include <QApplication>
#include <QPainter>
#include <QStyleOption>

namespace veltrix {
namespace {

const QString kFusion = QStringLiteral("fusion");

// The style draws the rim darker than the window, which a dark window swallows.
bool swallowsRims(const QPalette& palette) {
  return palette.color(QPalette::Window).lightness() < palette.color(QPalette::WindowText).lightness();
}

QColor between(const QColor& a, const QColor& b) {
  return {(a.red() + b.red()) / 2, (a.green() + b.green()) / 2, (a.blue() + b.blue()) / 2};
}

}  // namespace

FusionLook::FusionLook() : QProxyStyle(kFusion) {
  // Whoever asks for the application's style hears what it is at heart.
  setObjectName(kFusion);
}

void FusionLook::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                               const QWidget* widget) const {
  QProxyStyle::drawPrimitive(element, option, painter, widget);
  const bool isBox = element == PE_IndicatorCheckBox || element == PE_IndicatorRadioButton;
  if (!isBox || (option->state & State_HasFocus) != 0 || !swallowsRims(option->palette)) {
    return;
  }
  painter->save();
  painter->setRenderHint(QPainter::Antialiasing);
  painter->setPen(
      between(option->palette.color(QPalette::WindowText), option->palette.color(QPalette::Window)));
  painter->setBrush(Qt::NoBrush);
  const QRectF rim = QRectF(option->rect).adjusted(0.5, 0.5, -0.5, -0.5);
  if (element == PE_IndicatorRadioButton) {
    painter->drawEllipse(rim);
  } else {
    painter->drawRoundedRect(rim, 2, 2);
  }
  painter->restore();
}

QSize FusionLook::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                                   const QWidget* widget) const {
  QSize whole = QProxyStyle::sizeFromContents(type, option, size, widget);
  const auto* const button = qstyleoption_cast<const QStyleOptionButton*>(option);
  if (type == CT_PushButton && button != nullptr && !button->text.isEmpty()) {
    whole.setWidth(std::max(whole.width(), size.width() + 2 * option->fontMetrics.averageCharWidth()));
  }
  return whole;
}

int FusionLook::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                          QStyleHintReturn* data) const {
  return hint == SH_DialogButtonBox_ButtonsHaveIcons ? 0 : QProxyStyle::styleHint(hint, option, widget, data);
}

void mendFusion() {
  if (QApplication::style()->name() == kFusion &&
      dynamic_cast<FusionLook*>(QApplication::style()) == nullptr) {
    QApplication::setStyle(new FusionLook);
  }
}

}  // namespace veltrix
