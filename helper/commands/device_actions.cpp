#include "helper/commands/device_actions.h"

#include <algorithm>

#include "settings/button_key.h"
#include "settings/command_classes.h"
#include "settings/settings_keys.h"
#include "settings/settings_rules.h"

namespace veltrix {

namespace {

bool isAt(const ConnectedDevice& device, const DeviceAddress& address) {
  const VeltrixDeviceEntry& entry = device.found.entry;
  return entry.vendorID == address.vendor && entry.productID == address.product &&
         entry.productVers == address.productVersion;
}

plist::Dictionary buttonsOf(const plist::Value& entry) {
  return entry.asDictionary().dictionaryFor(keys::kButtons);
}

// The buttons of the entry for every device; null without one.
plist::Dictionary globalButtons(const plist::Array& entries, const DeviceAddress& device) {
  std::int32_t global = -1;
  VeltrixMatchAppPrefs(entries, nullptr, nullptr, device.vendor, device.product, device.productVersion,
                       nullptr, &global);
  return buttonsOf(entries.at(static_cast<std::size_t>(global)));
}

}  // namespace

CommandAction DeviceActions::actionOf(const DeviceAddress& device, std::uint16_t slot) const {
  const auto& devices = fCore.devices();
  const auto found =
      std::find_if(devices.begin(), devices.end(), [&](const auto& other) { return isAt(other, device); });
  if (found == devices.end() || !found->record.record)
    return {};
  const plist::Array& entries = fCore.settings().entries();
  const std::string key = buttonKey(slot);
  const plist::Value entry = entries.at(static_cast<std::size_t>(found->record.entryIndex));
  plist::Dictionary action = buttonsOf(entry).dictionaryFor(key);
  if (action.uint16For(keys::kCommand) == kFallbackCommand && !found->record.isGlobal) {
    if (const plist::Dictionary fallback = globalButtons(entries, device))
      action = fallback.dictionaryFor(key);
  }
  return {action.uint16For(keys::kCommand), action.stringFor(keys::kText), action.stringFor(keys::kBundleId)};
}

std::string DeviceActions::snippet(std::uint8_t number) const {
  if (number < 1)
    return {};
  return fCore.settings().snippets().at(number - 1U).asDictionary().stringFor(keys::kSnippetText);
}

}  // namespace veltrix
