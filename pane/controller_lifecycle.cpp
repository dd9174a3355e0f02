#include <QTimer>

#include "helperlink/helper_protocol.h"
#include "keyboard/key_names.h"
#include "pane/controller.h"
#include "pane/outlets.h"
#include "pane/pref_pane.h"

using veltrix::DeviceState;
using veltrix::Outlets;
using veltrix::PaneServices;

VeltrixController* gVeltrixController = nullptr;

namespace {

constexpr std::uint32_t kFirstReleaseWithOwnWarning = 0x1090;

}  // namespace

VeltrixController::VeltrixController(VeltrixPrefPane* pane, Outlets* outlets, const PaneServices& services)
    : veltrix::SettingsStore(services.settings), fPane(pane), fOutlets(outlets), fServices(services) {}

VeltrixController::~VeltrixController() {
  if (gVeltrixController == this) {
    fServices.setDeviceStateConsumer({});
    fServices.setDriverStatusConsumer({});
    gVeltrixController = nullptr;
  }
}

void VeltrixController::connectEditors(VeltrixEditController* edit, VeltrixParamController* params) {
  outControllerEdit = edit;
  outControllerParams = params;
}

void VeltrixController::awakeFromNib() {
  gVeltrixController = this;
  // Without a keyboard layout the names of keys stay what they are.
  GetKeyboardInformation(gVeltrixBundle, veltrix::kStringTable);
  vtxSaveTabs();
  fOutlets->main.outMainTabsRoot->setCurrentIndex(0);
  fillButtonGroups();
  copyTemplateMenu();
  connectActions();
  connectCommands();
  // No trackball is known yet: the first entry, and the page without a device, until the first poll.
  std::uint32_t deviceTab = 0;
  fCurSettingsIndex = vtxFindSettingsForDevice(0, &deviceTab);
  fCurDeviceTab = static_cast<std::int32_t>(deviceTab);
  if (loadDocument()) {
    vtxGetSettingsFromPrefs();
    vtxGetUIFromSettings();
  }
  // Device states arrive on a thread of their own.
  fServices.setDeviceStateConsumer([this](const DeviceState& state) {
    QMetaObject::invokeMethod(
        this, [this, state] { vtxReceiveDeviceState(state); }, Qt::QueuedConnection);
  });
  showDriver();
  followDriver();
  if (!fPrefsDict.boolFor("paramUI")) {
    delete fOutlets->scrolling.outScrollButtonAdvanced;
    fOutlets->scrolling.outScrollButtonAdvanced = nullptr;
  }
  const bool old = fServices.systemVersion() < kFirstReleaseWithOwnWarning;
  fOutlets->warning.outAccessibilityLabelWarning->setText(
      fPane->vtxLocString(old ? "SNAP_WARNING_10.8" : "SNAP_WARNING_10.9"));
}

void VeltrixController::vtxPrefPaneDidSelect() {
  vtxUpdateHelpLabels();
  fServices.sendMessageToHelper(veltrix::kPaneShownMessage);
}

void VeltrixController::vtxPrefPaneWillUnselect() {
  vtxGetSettingsFromUI();
  vtxSavePrefsToFile(fPrefsDict);
  fServices.sendMessageToHelper(veltrix::kPaneLeftMessage);
}

void VeltrixController::vtxPrefPaneDidBecomeKey() {}

void VeltrixController::vtxPrefPaneDidResignActive() {
  vtxGetSettingsFromUI();
  vtxSavePrefsToFile(fPrefsDict);
}

void VeltrixController::actUpdateSettings(QObject* sender) {
  vtxGetSettingsFromUI();
  if (sender->property("tag").toInt() == kRefreshTag) {
    vtxGetUIFromSettings();
  }
  vtxSavePrefsToFile(fPrefsDict);
}

void VeltrixController::connectActions() {
  const auto& pointer = fOutlets->pointer;
  const auto& scrolling = fOutlets->scrolling;
  QAbstractButton* const buttons[] = {
      pointer.outPointerBoxAccel,        pointer.outPointerBoxJump,         pointer.outPointerBoxSlow,
      pointer.outPointerButtonSlowCmd,   pointer.outPointerButtonSlowShift, pointer.outPointerButtonSlowOpt,
      pointer.outPointerButtonSlowCtrl,  pointer.outPointerBoxSingleAxis,   pointer.outPointerButtonAxisCmd,
      pointer.outPointerButtonAxisShift, pointer.outPointerButtonAxisOpt,   pointer.outPointerButtonAxisCtrl,
      scrolling.outScrollBoxInertial};
  for (QAbstractButton* button : buttons) {
    connect(button, &QAbstractButton::clicked, this, [this, button] { actUpdateSettings(button); });
  }
  QSlider* const sliders[] = {pointer.outPointerSliderSpeed, pointer.outPointerSliderAccel,
                              scrolling.outScrollSliderSpeed};
  for (QSlider* slider : sliders) {
    connect(slider, &QSlider::valueChanged, this, [this, slider] {
      updateReadouts();
      actUpdateSettings(slider);
    });
  }
  auto* const direction = scrolling.outScrollMatrixDirection;
  connect(direction, &veltrix::CellMatrix::chosen, this, [this, direction] {
    actScrollMatrixDirection();
    actUpdateSettings(direction);
  });
  connect(fOutlets->main.outMainMatrixDevices, &veltrix::CellMatrix::chosen, this,
          &VeltrixController::actSelectDevice);
  QTabWidget* const tabs = fOutlets->main.outMainTabsRoot;
  connect(tabs, &QTabWidget::currentChanged, this, [this, tabs](int index) { tabView(tabs, index); });
}

void VeltrixController::connectCommands() {
  connect(fOutlets->main.buttonRestoreDefaults, &QAbstractButton::clicked, this,
          &VeltrixController::actButtonRestoreDefaults);
  connect(fOutlets->help.buttonSaveInformation, &QAbstractButton::clicked, this,
          &VeltrixController::actButtonSaveInformation);
  const auto& help = fOutlets->help;
  for (QAbstractButton* link : std::initializer_list<QAbstractButton*>{help.buttonWebSite, help.buttonSupport,
                                                                       help.buttonUninstall}) {
    connect(link, &QAbstractButton::clicked, this, [this, link] { actButtonOpenLink(link); });
  }
  connect(fOutlets->scrolling.outScrollButtonAdvanced, &QAbstractButton::clicked, this,
          &VeltrixController::actButtonEditScrollParams);
  connect(help.buttonDriver, &QAbstractButton::clicked, this, &VeltrixController::actButtonDriver);
  for (QAbstractButton* ok : {fOutlets->warning.buttonAccessibilityOK, fOutlets->driver.buttonDriverOK}) {
    connect(ok, &QAbstractButton::clicked, this, &VeltrixController::actModalButtonOK);
  }
}
