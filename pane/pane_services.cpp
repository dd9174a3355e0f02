#include "pane/pane_services.h"

#include <memory>
#include <optional>
#include <utility>

#include "helperlink/helper_messaging.h"
#include "helperlink/login_item.h"
#include "helperlink/system_version.h"
#include "platform/application_folder.h"
#include "platform/user_paths.h"
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
  // An opener that fails has told the user so by itself, or there is none and nothing to be done.
  services.openUrl = [](const std::string& url) { static_cast<void>(veltrix::openUrl(url)); };
  services.openFile = [resources = bundle.resourcePath()](const std::string& path) {
    static_cast<void>(veltrix::openFile(packagedApplication(path, resources)));
  };
  services.selectFile = [](const std::string& path) { static_cast<void>(veltrix::selectFile(path)); };
  services.homeDirectory = veltrix::homeDirectory;
  services.now = std::chrono::system_clock::now;
  services.osRelease = [] { return readOsRelease(); };
  services.setDeviceStateConsumer = [](DeviceStateConsumer consumer) {
    veltrix::setDeviceStateConsumer(std::move(consumer));
    installDeviceStateHandler();
  };
  services.setDriverStatusConsumer =
      [watch = std::make_shared<std::unique_ptr<DriverStatusWatch>>()](DriverStatusConsumer consumer) {
        *watch = consumer ? std::make_unique<DriverStatusWatch>(std::move(consumer)) : nullptr;
      };
  return services;
}

}  // namespace veltrix
