#include <QDialog>
#include <QScopedValueRollback>
#include <string>

#include "editor/param_controller.h"
#include "pane/controller.h"
#include "pane/device_report.h"
#include "pane/links.h"
#include "pane/outlets.h"
#include "pane/pref_pane.h"
#include "settings/support_information.h"

namespace {

constexpr std::int32_t kDialogOK = 1;
constexpr std::int32_t kDialogCancel = 0;
constexpr std::int32_t kNoDialog = -1000;

}  // namespace

void VeltrixController::actButtonRestoreDefaults() {
  if (!restoreDefaultEntry(fCurSettingsIndex)) {
    return;
  }
  vtxGetSettingsFromPrefs();
  vtxGetUIFromSettings();
}

void VeltrixController::actButtonSaveInformation() {
  const veltrix::SupportFacts facts = {fServices.now(), gVeltrixBundle->infoValue("CFBundleVersion"),
                                       fServices.osRelease(), fPane->vtxGetDeviceList()};
  const std::string path = veltrix::supportInformationPath(fServices.homeDirectory());
  // What came of it shows itself in the folder.
  static_cast<void>(veltrix::writeSupportInformation(path, fPrefsDict, facts));
  fServices.selectFile(path);
}

void VeltrixController::actButtonOpenLink(QObject* sender) {
  switch (sender->property("tag").toInt()) {
    case veltrix::kProductLinkTag:
      return fServices.openUrl(veltrix::kProductUrl);
    case veltrix::kSupportLinkTag:
      return fServices.openUrl(veltrix::kSupportUrl);
    case veltrix::kUninstallerLinkTag:
      return fServices.openFile(veltrix::kUninstallerPath);
    default:
      return;
  }
}

// The direction is read with all other controls.
void VeltrixController::actScrollMatrixDirection() {}

// No control shows these parameters, so nothing is filled again.
void VeltrixController::actButtonEditScrollParams() {
  if (outControllerParams->editScrollParams(fCurSettingsDict)) {
    vtxSavePrefsToFile(fPrefsDict);
  }
}

void VeltrixController::vtxUpdateHelpLabels() {
  QLabel* const label = fOutlets->help.outHelpLabelVersion;
  const std::string version = gVeltrixBundle->infoValue("CFBundleVersion").asString();
  label->setText(
      QString::fromStdString(veltrix::completedVersionLabel(label->text().toStdString(), version)));
}

std::int32_t VeltrixController::modalDialog(QDialog* window) {
  if (window == nullptr) {
    return kNoDialog;
  }
  const QScopedValueRollback<QDialog*> running(fModalWindow, window);
  window->setWindowModality(Qt::WindowModal);
  const int code = window->exec();
  window->hide();
  return code;
}

void VeltrixController::actModalButtonOK() {
  if (fModalWindow != nullptr) {
    fModalWindow->done(kDialogOK);
  }
}

void VeltrixController::actModalButtonCancel() {
  if (fModalWindow != nullptr) {
    fModalWindow->done(kDialogCancel);
  }
}
