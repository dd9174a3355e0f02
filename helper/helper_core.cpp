#include "helper/helper_core.h"

#include <algorithm>
#include <cstring>

namespace veltrix {

namespace {

constexpr std::size_t kRememberedMessages = 16;

// A burst of messages is served by one reading, but not by none for as long as the burst lasts.
constexpr unsigned kMostDueReadings = 32;

constexpr std::uint16_t kDeviceStateLayout = 1;

}  // namespace

HelperCore::HelperCore(std::string userSettingsPath, std::string factorySettingsPath)
    : fSettings(std::move(userSettingsPath), std::move(factorySettingsPath)), fDueReadings(1) {
  // As long as nobody says otherwise.
  fList.helperState = kVeltrixHelperStateAccessibility;
  settle();
}

std::int32_t HelperCore::takeEvent(const IncomingEvent& event, EventReply* reply) {
  if (event.eventClass != kVeltrixEventClass)
    return kEventNotHandled;
  if (event.eventId == kHelperMessageEvent)
    return takeMessage(event.parameter);
  if (event.eventId != kGetConnectedDevicesEvent)
    return kEventNotHandled;
  *reply =
      EventReply(EventParameter(kDirectObjectKeyword, kDeviceListType, std::as_bytes(std::span(&fList, 1))));
  return 0;
}

std::int32_t HelperCore::takeMessage(const EventParameter& parameter) {
  std::uint32_t message = 0;
  std::size_t size = 0;
  const std::int32_t status =
      parameter.read(kDirectObjectKeyword, kUnsigned32Type, &message, sizeof message, &size);
  if (status != 0)
    return status;
  if (size != sizeof message)
    return kEventCoercionFailed;
  if (message != kSettingsChangedMessage && message != kPaneShownMessage && message != kPaneLeftMessage) {
    return kEventNotHandled;
  }
  if (fMessages.size() == kRememberedMessages)
    fMessages.erase(fMessages.begin());
  fMessages.push_back(message);
  if (message == kSettingsChangedMessage) {
    ++fDueReadings;
    if (fDueReadings >= kMostDueReadings)
      settle();
    if (fDueReadings == 1 && fObserver != nullptr)
      fObserver->readingIsDue();
  } else {
    fPaneShown = message == kPaneShownMessage;
  }
  if (fObserver != nullptr)
    fObserver->messageTaken();
  return 0;
}

void HelperCore::settle() {
  if (fDueReadings == 0)
    return;
  fDueReadings = 0;
  fSettings.reread();
  ++fGeneration;
  for (ConnectedDevice& device : fDevices) {
    device.record = makeDeviceRecord(fSettings.entries(), device.found.entry);
  }
  if (fObserver != nullptr)
    fObserver->settingsRead();
}

void HelperCore::deviceAttached(const FoundDevice& device) {
  settle();
  fDevices.push_back({device, makeDeviceRecord(fSettings.entries(), device.entry)});
  updateDevices();
}

void HelperCore::deviceDetached(const std::string& id) {
  const auto gone = std::find_if(fDevices.begin(), fDevices.end(),
                                 [&](const ConnectedDevice& d) { return d.found.id == id; });
  if (gone == fDevices.end())
    return;
  fDevices.erase(gone);
  updateDevices();
}

void HelperCore::setAccessibility(bool granted) {
  const std::uint16_t state = granted ? kVeltrixHelperStateAccessibility : std::uint16_t{0};
  if (state == fList.helperState)
    return;
  fList.helperState = state;
  updateDevices();
}

void HelperCore::rebuildList() {
  fList.count = static_cast<std::uint16_t>(std::min(fDevices.size(), kVeltrixMaxDevices));
  for (std::size_t i = 0; i < kVeltrixMaxDevices; ++i) {
    // Slots that are not in use carry nothing of devices that were there before.
    fList.device[i] = i < fList.count ? fDevices[i].found.entry : VeltrixDeviceEntry{};
  }
}

void HelperCore::updateDevices() {
  rebuildList();
  ++fDeviceChanges;
  if (fObserver != nullptr)
    fObserver->devicesChanged();
}

DeviceState HelperCore::deviceState() const {
  struct {
    std::uint16_t layout;
    std::uint16_t count;
    std::uint16_t helperState;
    std::uint16_t reserved;
    std::uint32_t deviceChanges;
    std::uint32_t generation;
  } const state = {kDeviceStateLayout, fList.count, fList.helperState, 0, fDeviceChanges, fGeneration};
  DeviceState bytes{};
  static_assert(sizeof state == sizeof bytes);
  std::memcpy(bytes.data(), &state, sizeof state);
  return bytes;
}

}  // namespace veltrix
