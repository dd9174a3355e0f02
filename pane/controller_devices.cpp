#include <QAbstractButton>
#include <algorithm>
#include <string>

#include "helperlink/device_buttons.h"
#include "helperlink/device_kinds.h"
#include "pane/controller.h"
#include "pane/device_report.h"
#include "pane/outlets.h"
#include "pane/pref_pane.h"

void VeltrixController::vtxUpdateDeviceList(const VeltrixDeviceList* list) {
  findAndShowSettings(0);
  const auto present = veltrix::presentKinds(*list);
  const std::string noDevice = fPane->vtxLocString("No device found.").toStdString();
  fOutlets->help.outHelpTextDevices->setText(
      QString::fromStdString(veltrix::deviceHelpText(*list, noDevice)));
  veltrix::CellMatrix* const matrix = fOutlets->main.outMainMatrixDevices;
  for (int column = 0; column < static_cast<int>(present.size()); ++column) {
    matrix->cell(column)->setEnabled(present.at(static_cast<std::size_t>(column)));
  }
  matrix->selectCellWithTag(fCurSettingsDict.int32For("device product id"));
  const auto kinds = static_cast<int>(std::count(present.begin(), present.end(), true));
  fOutlets->main.outMainTabsDeviceIcons->setCurrentIndex(veltrix::deviceIconsPage(kinds));
  showOneDevice(*list);
}

// The device states are for uses to come; until then they are taken and left.
void VeltrixController::vtxReceiveDeviceState(const veltrix::DeviceState& /*state*/) {}

// Nothing is read back first: every change of a control has been written already.
void VeltrixController::actSelectDevice() {
  findAndShowSettings(static_cast<std::uint16_t>(fOutlets->main.outMainMatrixDevices->selectedTag()));
}

void VeltrixController::findAndShowSettings(std::uint16_t productId) {
  std::uint32_t deviceTab = veltrix::kNoDeviceTab;
  fCurSettingsIndex = vtxFindSettingsForDevice(productId, &deviceTab);
  fCurDeviceTab = static_cast<std::int32_t>(deviceTab);
  vtxGetSettingsFromPrefs();
  vtxGetUIFromSettings();
  veltrix::showButtonPage(*fOutlets, fCurDeviceTab);
}

// The strip's page for a single kind; without a trackball the strip takes no room.
void VeltrixController::showOneDevice(const VeltrixDeviceList& list) {
  const veltrix::DeviceKind* kind = nullptr;
  for (std::size_t i = 0; i < VeltrixDeviceCount(list) && kind == nullptr; ++i) {
    kind = veltrix::findDeviceKind(list.device[i].productID);
  }
  fOutlets->main.outMainTabsDeviceIcons->setVisible(kind != nullptr);
  if (kind != nullptr) {
    fOutlets->main.pictureOneDevice->setPicture(QString::fromLatin1(veltrix::devicePicture(fCurDeviceTab)));
    fOutlets->main.labelOneDevice->setText(QString::fromUtf8(kind->name));
  }
}
