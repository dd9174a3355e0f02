#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>

#include "helperlink/device_list.h"
#include "helperlink/device_state.h"
#include "helperlink/driver_status.h"
#include "platform/bundle.h"
#include "platform/os_release.h"
#include "settings/settings_store.h"

namespace veltrix {

// What the pane reaches the rest of the system through. Every function is present.
struct PaneServices {
  SettingsEnvironment settings;                               // the pane fills in connectedDevices
  std::function<std::int16_t()> findHelper;                   // 0 while the helper runs
  std::function<void(const std::string&)> launchApplication;  // the path of an application folder
  std::function<void(const std::string&)> addLoginItem;       // the same
  std::function<std::int32_t(VeltrixDeviceList*)> getConnectedDevices;
  std::function<std::int32_t(std::uint32_t)> sendMessageToHelper;
  std::function<std::uint32_t()> systemVersion;

  std::function<void(const std::string&)> openUrl;
  std::function<void(const std::string&)> openFile;    // an absolute path, also of an application folder
  std::function<void(const std::string&)> selectFile;  // shows the file of that path in its folder
  std::function<std::string()> homeDirectory;
  std::function<std::chrono::system_clock::time_point()> now;
  std::function<OsRelease()> osRelease;

  // Names the one consumer of the helper's device states, or none when it is empty; the former one is not
  // called any more when this returns. A consumer may be called on any thread.
  std::function<void(DeviceStateConsumer)> setDeviceStateConsumer;

  // The same for what the helper says of the driver.
  std::function<void(DriverStatusConsumer)> setDriverStatusConsumer;
};

// The real ones, for the pane of that bundle.
PaneServices standardPaneServices(const Bundle& bundle);

}  // namespace veltrix
