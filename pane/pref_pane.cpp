#include "pane/pref_pane.h"

#include <QCoreApplication>
#include <QTabBar>
#include <QWidget>
#include <chrono>
#include <string>
#include <utility>

#include "editor/edit_controller.h"
#include "editor/param_controller.h"
#include "keyboard/keystroke_capture.h"
#include "pane/controller.h"
#include "pane/host_notifications.h"
#include "pane/outlets.h"
#include "pane/table_translator.h"

using veltrix::HostNotifications;

VeltrixPrefPane* gVeltrixPrefPane = nullptr;
const veltrix::Bundle* gVeltrixBundle = nullptr;

namespace {

constexpr std::chrono::seconds kPollInterval{1};

}  // namespace

std::unique_ptr<VeltrixPrefPane> VeltrixPrefPane::initWithBundle(veltrix::Bundle bundle,
                                                                 veltrix::PaneServices services,
                                                                 HostNotifications* notifications) {
  return std::unique_ptr<VeltrixPrefPane>(
      new VeltrixPrefPane(std::move(bundle), std::move(services), notifications));
}

VeltrixPrefPane::VeltrixPrefPane(veltrix::Bundle bundle, veltrix::PaneServices services,
                                 HostNotifications* notifications)
    : fBundle(std::move(bundle)), fServices(std::move(services)), fNotifications(notifications) {
  gVeltrixPrefPane = this;
  gVeltrixBundle = &fBundle;
  fServices.settings.connectedDevices = [this] { return &fDeviceList; };
  fDeviceCheckTimer.setObjectName("fDeviceCheckTimer");
  fDeviceCheckTimer.setParent(this);
  fDeviceCheckTimer.setInterval(kPollInterval);
  // A dialog works on what is shown; nothing may be exchanged below it.
  connect(&fDeviceCheckTimer, &QTimer::timeout, this, [this] {
    if (!outControllerVeltrix->dialogRuns()) {
      vtxCheckDevices();
    }
  });
}

VeltrixPrefPane::~VeltrixPrefPane() {
  setTakesKeystrokes(false);
  outControllerVeltrix.reset();
  delete fMainView;
  if (gVeltrixPrefPane == this) {
    gVeltrixPrefPane = nullptr;
    gVeltrixBundle = nullptr;
  }
}

QWidget* VeltrixPrefPane::loadMainView() {
  fTranslator = std::make_unique<veltrix::TableTranslator>(fBundle);
  QCoreApplication::installTranslator(fTranslator.get());
  fMainView = new QWidget;
  fOutlets = std::make_unique<veltrix::Outlets>();
  veltrix::makeInterface(fMainView, fOutlets.get());
  outControllerVeltrix = std::make_unique<VeltrixController>(this, fOutlets.get(), fServices);
  // The editors know the controller as their host and it knows them, so they meet only when all are there.
  outControllerVeltrixEdit = std::make_unique<VeltrixEditController>(fBundle, outControllerVeltrix.get(),
                                                                     fMainView, fServices.systemVersion());
  outControllerVeltrixParams =
      std::make_unique<VeltrixParamController>(outControllerVeltrix.get(), fMainView);
  outControllerVeltrix->connectEditors(outControllerVeltrixEdit.get(), outControllerVeltrixParams.get());
  outControllerVeltrix->awakeFromNib();
  // The keys begin where the pages are chosen.
  fMainView->setFocusProxy(fOutlets->main.outMainTabsRoot->tabBar());
  return fMainView;
}

void VeltrixPrefPane::mainViewDidLoad() {
  const std::string helper = fBundle.resourcePath() + "/VeltrixHelper.app";
  if (fServices.findHelper() != 0) {
    fServices.launchApplication(helper);
  }
  fServices.addLoginItem(helper);
}

void VeltrixPrefPane::didSelect() {
  setTakesKeystrokes(true);
  vtxCheckDevices();
  fDeviceCheckTimer.start();
  outControllerVeltrix->vtxPrefPaneDidSelect();
  connect(fNotifications, &HostNotifications::windowDidBecomeKey, this,
          &VeltrixPrefPane::sysPrefWindowDidBecomeKey);
  connect(fNotifications, &HostNotifications::applicationDidResignActive, this,
          &VeltrixPrefPane::sysPrefDidResignActive);
}

void VeltrixPrefPane::willUnselect() {
  fNotifications->disconnect(this);
  outControllerVeltrix->vtxPrefPaneWillUnselect();
  fDeviceCheckTimer.stop();
  setTakesKeystrokes(false);
}

// Every exchange counts, so a host that ends without leaving the pane must not leave keys to an editor that
// is gone.
void VeltrixPrefPane::setTakesKeystrokes(bool takes) {
  if (takes != fTakesKeystrokes) {
    fTakesKeystrokes = takes;
    VeltrixSwapNSAppMethods(takes ? outControllerVeltrixEdit.get() : nullptr);
  }
}

void VeltrixPrefPane::sysPrefWindowDidBecomeKey() {
  fPanelIsFront = true;
  outControllerVeltrix->vtxPrefPaneDidBecomeKey();
}

void VeltrixPrefPane::sysPrefDidResignActive() {
  fPanelIsFront = false;
  outControllerVeltrix->vtxPrefPaneDidResignActive();
}

// Only the number is compared: one trackball exchanged for another between two polls is noticed when the
// number changes next.
void VeltrixPrefPane::vtxCheckDevices() {
  if (fServices.getConnectedDevices(&fDeviceList) != 0) {
    return;
  }
  const auto count = static_cast<std::int16_t>(VeltrixDeviceCount(fDeviceList));
  if (count == fDeviceCount) {
    return;
  }
  fDeviceCount = count;
  outControllerVeltrix->vtxUpdateDeviceList(&fDeviceList);
}

QString VeltrixPrefPane::vtxLocString(const char* key) const {
  return QString::fromStdString(fBundle.localizedString(key, "", veltrix::kStringTable));
}
