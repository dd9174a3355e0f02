#include "pane/outlets.h"

#include <QEvent>
#include <QFont>
#include <QGridLayout>
#include <QScrollArea>
#include <QString>
#include <QTabBar>

#include "helperlink/device_buttons.h"
#include "helperlink/device_kinds.h"
#include "pane/links.h"
#include "pane/page_tables.h"
#include "pane/slider_positions.h"

namespace veltrix {
namespace {

constexpr int kOneDeviceLines = 5;  // heights in lines of text
constexpr int kDeviceCellLines = 3;
constexpr int kNoDeviceLines = 7;
constexpr int kDirectionLines = 9;
constexpr int kDriverSheetLines = 28;
constexpr qreal kHeadingSize = 1.3;  // relative to the usual text

void makeHeading(QLabel* label) {
  QFont font = label->font();
  font.setPointSizeF(font.pointSizeF() * kHeadingSize);
  font.setBold(true);
  label->setFont(font);
}

void setHeightInLines(QWidget* widget, int lines) {
  const int height = widget->fontMetrics().height() * lines;
  widget->setMinimumHeight(height);
  widget->setMaximumHeight(height);
}

void finishDeviceStrip(Outlets* outlets) {
  PictureView* const onlyDevice = outlets->main.pictureOneDevice;
  setHeightInLines(onlyDevice, kOneDeviceLines);
  onlyDevice->setFixedWidth(onlyDevice->minimumHeight());
  makeHeading(outlets->main.labelOneDevice);
  PictureCell* const cells[kDeviceKindCount] = {outlets->main.cellDevice0, outlets->main.cellDevice1,
                                                outlets->main.cellDevice2, outlets->main.cellDevice3,
                                                outlets->main.cellDevice4};
  for (const DeviceKind& kind : kDeviceKinds) {
    PictureCell* const cell = cells[kind.selectorColumn];
    cell->setCaption(QString::fromUtf8(kind.name));
    cell->setPictureLines(kDeviceCellLines);
  }
  outlets->main.outMainMatrixDevices->adoptCells();
}

ButtonPicture* buttonPicture(const Outlets& outlets, std::int32_t deviceTab) {
  switch (deviceTab) {
    case 2:
      return outlets.buttons.pictureDev1;
    case 3:
      return outlets.buttons.pictureDev2;
    case 4:
      return outlets.buttons.pictureDev3;
    case 5:
      return outlets.buttons.pictureDev4;
    case 6:
      return outlets.buttons.pictureDev5;
    case 7:
      return outlets.buttons.pictureDev6;
    default:
      return nullptr;
  }
}

void finishButtonPages(Outlets* outlets) {
  makeHeading(outlets->buttons.labelNoDevice);
  setHeightInLines(outlets->buttons.pictureNoDevice, kNoDeviceLines);
}

void finishSliders(Outlets* outlets) {
  outlets->pointer.outPointerSliderSpeed->setDetents(speedPositions());
  outlets->pointer.outPointerSliderAccel->setDetents(
      steadyAccelerationPositions(kLargestAccelerationPosition));
  // A readout that changes its width would move the slider below the hand.
  QLabel* const dpi = outlets->pointer.labelSpeedDpi;
  dpi->setMinimumWidth(dpi->fontMetrics().horizontalAdvance(QStringLiteral("5000 dpi  ")));
  outlets->pointer.curveAccel->setLargestFactor(positionToAcceleration(kLargestAccelerationPosition));
}

void finishHelpPage(const Ui::VeltrixHelpTab& help) {
  makeHeading(help.labelHelpDevices);
  makeHeading(help.labelHelpSupport);
  makeHeading(help.labelHelpUninstall);
  // Nobody follows a link that does not say where it leads.
  help.buttonWebSite->setToolTip(QString::fromLatin1(kProductUrl));
  help.buttonSupport->setToolTip(QString::fromLatin1(kSupportUrl));
  help.buttonSaveInformation->setAccessibleDescription(help.labelSaveInformation->text());
  help.buttonUninstall->setAccessibleDescription(help.labelUninstall->text());
}

// Its texts are of any length and break anywhere; the sheet is to have a shape that reads well.
void finishDriverSheet(const Ui::VeltrixDriverSheet& sheet) {
  const int line = sheet.outDriverTextState->fontMetrics().height();
  sheet.outDriverTextState->setMinimumWidth(line * kDriverSheetLines);
  sheet.driverLayout->setSpacing(line);
}

// Keeps a page as high as its texts need at its width, so that it scrolls before it squeezes them: a scroll
// area asks a page for its least height alone, which is that of texts without line breaks.
class PageHeight : public QObject {
 public:
  explicit PageHeight(QWidget* page) : QObject(page) { page->installEventFilter(this); }

  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::Resize || event->type() == QEvent::LayoutRequest) {
      auto* const page = static_cast<QWidget*>(watched);
      page->setMinimumHeight(page->layout()->minimumHeightForWidth(page->width()));
    }
    return false;
  }
};

// The tab's own background shows through, and margins, rows and columns keep a distance that grows with the
// font.
void finishPage(QScrollArea* page) {
  const int line = page->fontMetrics().height();
  page->viewport()->setAutoFillBackground(false);
  page->widget()->setAutoFillBackground(false);
  QLayout* const rows = page->widget()->layout();
  rows->setContentsMargins(line, line, line, line);
  if (auto* grid = qobject_cast<QGridLayout*>(rows)) {
    grid->setSpacing(line * 2 / 3);
  }
  new PageHeight(page->widget());
}

// The pages were made after the button below them, so that Tab would lead to it first.
void finishTabOrder(QWidget* view, const Ui::VeltrixMainView& main) {
  QWidget::setTabOrder(view->previousInFocusChain(), main.buttonRestoreDefaults);
}

}  // namespace

void showButtonPage(const Outlets& outlets, std::int32_t deviceTab) {
  if (ButtonPicture* const picture = buttonPicture(outlets, deviceTab)) {
    picture->setPicture(QString::fromLatin1(devicePicture(deviceTab)));
  }
  outlets.buttons.outBtnTabsDevices->setCurrentIndex(deviceTab);
}

void makeInterface(QWidget* view, Outlets* outlets) {
  outlets->main.setupUi(view);
  outlets->buttons.setupUi(outlets->main.tabButtons);
  outlets->pointer.setupUi(outlets->main.tabPointer);
  outlets->scrolling.setupUi(outlets->main.tabScrolling);
  outlets->help.setupUi(outlets->main.tabHelp);
  outlets->outWindowAccessibilityWarning = new QDialog(view);
  outlets->warning.setupUi(outlets->outWindowAccessibilityWarning);
  outlets->outWindowDriver = new QDialog(view);
  outlets->driver.setupUi(outlets->outWindowDriver);
  // Hiding the selected tab moves the user to the one before it.
  outlets->main.outMainTabsRoot->tabBar()->setSelectionBehaviorOnRemove(QTabBar::SelectLeftTab);
  outlets->scrolling.outScrollMatrixDirection->adoptCells();
  setHeightInLines(outlets->scrolling.outScrollTabsDirection, kDirectionLines);
  finishHelpPage(outlets->help);
  finishDriverSheet(outlets->driver);
  finishPage(outlets->pointer.VeltrixPointerTabScroll);
  finishPage(outlets->scrolling.VeltrixScrollingTabScroll);
  finishPage(outlets->help.VeltrixHelpTabScroll);
  finishDeviceStrip(outlets);
  finishButtonPages(outlets);
  finishSliders(outlets);
  finishTabOrder(view, outlets->main);
}

}  // namespace veltrix
