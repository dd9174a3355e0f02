#include <QMetaObject>
#include <QString>

#include "pane/controller.h"
#include "pane/driver_text.h"
#include "pane/outlets.h"
#include "pane/pref_pane.h"

using veltrix::DriverStatus;

// The status arrives on a thread of its own.
void VeltrixController::followDriver() {
  fServices.setDriverStatusConsumer([this](const DriverStatus& status) {
    QMetaObject::invokeMethod(
        this,
        [this, status] {
          fDriverStatus = status;
          showDriver();
        },
        Qt::QueuedConnection);
  });
}

void VeltrixController::showDriver() {
  const auto text = [this](const char* key) { return fPane->vtxLocString(key).toStdString(); };
  const auto& sheet = fOutlets->driver;
  const QString headline = QString::fromStdString(veltrix::driverHeadline(fDriverStatus, text));
  fOutlets->help.outHelpTextDriver->setText(headline);
  fOutlets->help.buttonDriver->setAccessibleDescription(headline);
  fOutlets->main.labelAtOnce->setText(QString::fromStdString(veltrix::changesText(fDriverStatus, text)));
  sheet.outDriverTextState->setText(QString::fromStdString(veltrix::driverExplanation(fDriverStatus, text)));
  const QString devices = QString::fromStdString(veltrix::driverDevicesText(fDriverStatus, text));
  sheet.outDriverTextDevices->setText(devices);
  sheet.outDriverTextDevices->setVisible(!devices.isEmpty());
}

void VeltrixController::actButtonDriver() {
  fOutlets->driver.buttonDriverOK->setFocus();
  modalDialog(fOutlets->outWindowDriver);
}
