#include <utility>

#include "helperlink/helper_messaging.h"
#include "platform/user_paths.h"
#include "settings/settings_store.h"

namespace veltrix {

std::string settingsFilePath() {
  const std::string home = homeDirectory();
  return home.empty() ? std::string() : home + "/Library/Preferences/com.aldmoor.veltrix.settings.plist";
}

SettingsEnvironment standardSettingsEnvironment(std::string defaultsPath,
                                                std::function<const VeltrixDeviceList*()> connectedDevices) {
  return {settingsFilePath(), std::move(defaultsPath), std::move(connectedDevices),
          VeltrixSendMessageToHelper};
}

}  // namespace veltrix
