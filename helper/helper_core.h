#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "helper/device_record.h"
#include "helper/device_source.h"
#include "helper/helper_settings.h"
#include "helperlink/device_state.h"
#include "platform/event_receiver.h"

namespace veltrix {

// What the helper's surroundings do on its behalf; each is called right after the change.
class HelperObserver {
 public:
  virtual ~HelperObserver() = default;
  // The settings are to be read again soon: call HelperCore::settle() when nothing more urgent is left.
  virtual void readingIsDue() = 0;
  virtual void settingsRead() = 0;
  // Devices or the accessibility of the helper.
  virtual void devicesChanged() = 0;
  virtual void messageTaken() = 0;
};

struct ConnectedDevice {
  FoundDevice found;
  DeviceRecord record;
};

// The helper without its surroundings: knows the trackballs, holds the record of each, and answers events.
class HelperCore final : public DeviceListener {
 public:
  HelperCore(std::string userSettingsPath, std::string factorySettingsPath);
  // May be null; must outlive the core or be replaced.
  void setObserver(HelperObserver* observer) { fObserver = observer; }

  // Answers an event of the protocol; kEventNotHandled for any other.
  std::int32_t takeEvent(const IncomingEvent& event, EventReply* reply);

  void deviceAttached(const FoundDevice& device) override;
  void deviceDetached(const std::string& id) override;
  void setAccessibility(bool granted);

  // Reads the settings if that is due. What follows holds only after it.
  void settle();

  // In the order in which they were connected; the device list has the first 16.
  const std::vector<ConnectedDevice>& devices() const { return fDevices; }
  const VeltrixDeviceList& deviceList() const { return fList; }
  DeviceState deviceState() const;
  const HelperSettings& settings() const { return fSettings; }
  std::uint32_t generation() const { return fGeneration; }  // of the settings, 1 after the first reading
  bool paneShown() const { return fPaneShown; }
  const std::vector<std::uint32_t>& recentMessages() const { return fMessages; }  // oldest first, at most 16

 private:
  std::int32_t takeMessage(const EventParameter& parameter);
  void rebuildList();
  void updateDevices();

  HelperObserver* fObserver = nullptr;
  HelperSettings fSettings;
  std::uint32_t fGeneration = 0;
  unsigned fDueReadings = 0;  // messages that have asked for the reading that has not happened
  std::vector<ConnectedDevice> fDevices;
  VeltrixDeviceList fList{};
  std::uint32_t fDeviceChanges = 0;
  bool fPaneShown = false;
  std::vector<std::uint32_t> fMessages;
};

}  // namespace veltrix
