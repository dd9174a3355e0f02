#include "pane/pane_services.h"

#include <optional>
#include <utility>

#include "helperlink/helper_messaging.h"
#include "helperlink/login_item.h"
#include "helperlink/system_version.h"
#include "platform/workspace.h"

namespace veltrix {

PaneServices standardPaneServices(const Bundle& bundle) {
  PaneServices services;
  services.settings = standardSettingsEnvironment(bundle.pathForResource("DefaultSettings", "plist"), {});
  services.findHelper = [] { return VeltrixFindNamedProcess(kHelperProcessName, nullptr); };
  // What fails here shows itself: the helper does not answer, or is not there after the next login.
  services.launchApplication = [](const std::string& path) {
    static_cast<void>(veltrix::launchApplication(path));
  };
  services.addLoginItem = [](const std::string& path) { AddLoginItem(path, std::nullopt); };
  services.getConnectedDevices = VeltrixGetConnectedDevices;
  services.sendMessageToHelper = VeltrixSendMessageToHelper;
  services.systemVersion = MacOSXVersion;
  services.setDeviceStateConsumer = [](DeviceStateConsumer consumer) {
    veltrix::setDeviceStateConsumer(std::move(consumer));
    installDeviceStateHandler();
  };
  return services;
}

}  // namespace veltrix
