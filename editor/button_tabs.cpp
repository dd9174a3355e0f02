#include "editor/button_tabs.h"

#include <QLabel>
#include <QVBoxLayout>

#include "helperlink/device_buttons.h"
#include "widgets/button_numbers.h"
#include "widgets/picture_view.h"

namespace veltrix {
namespace {

constexpr int kWidthInLines = 11;
constexpr int kHeightInLines = 12;
constexpr int kSmallestWidthInLines = 6;

}  // namespace

ButtonTabs::ButtonTabs(QWidget* parent)
    : QWidget(parent), fPicture(new PictureView(this)), fCaption(new QLabel(this)) {
  auto* rows = new QVBoxLayout(this);
  rows->setContentsMargins(0, 0, 0, 0);
  rows->addStretch(1);
  rows->addWidget(fPicture, 4);
  rows->addWidget(fCaption);
  rows->addStretch(1);
  fCaption->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
  fCaption->setTextFormat(Qt::PlainText);
  fCaption->setWordWrap(true);
  QFont font = fCaption->font();
  font.setBold(true);
  fCaption->setFont(font);
}

void ButtonTabs::setDeviceTab(int deviceTab) {
  fDeviceTab = deviceTab;
  fPicture->setPicture(QString::fromLatin1(devicePicture(deviceTab)));
  showButton();
}

void ButtonTabs::setCurrentIndex(int index) {
  fIndex = index;
  showButton();
}

void ButtonTabs::showButton() {
  const auto numbers = buttonNumbers(fDeviceTab);
  const auto place = static_cast<std::size_t>(fIndex);
  const bool known = fIndex >= 0 && place < numbers.size();
  fPicture->setLit(known ? buttonElements(numbers[place]) : QStringList());
  fCaption->setText(known ? calloutCaption(numbers[place]) : QString());
  fPicture->setAccessibleName(fCaption->text());
}

QStringList ButtonTabs::lit() const {
  return fPicture->lit();
}

QString ButtonTabs::caption() const {
  return fCaption->text();
}

QSize ButtonTabs::sizeHint() const {
  const int line = fontMetrics().height();
  return {line * kWidthInLines, line * kHeightInLines};
}

QSize ButtonTabs::minimumSizeHint() const {
  const int line = fontMetrics().height();
  return {line * kSmallestWidthInLines, line * kSmallestWidthInLines};
}

}  // namespace veltrix
