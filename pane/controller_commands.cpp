#include <QDialog>
#include <QScopedValueRollback>
#include <string>

#include "pane/controller.h"
#include "pane/device_report.h"
#include "pane/outlets.h"
#include "pane/pref_pane.h"

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

// The direction is read with all other controls.
void VeltrixController::actScrollMatrixDirection() {}

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
