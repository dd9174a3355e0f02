#include "helper/simulated_device_source.h"

#include <algorithm>

#include "helper/device_entry.h"
#include "helperlink/device_kinds.h"
#include "util/hex_number.h"

namespace veltrix {

namespace {

VeltrixDeviceEntry entryOf(const SimulatedDevice& device) {
  VeltrixDeviceEntry entry{};
  entry.vendorID = device.vendorId;
  entry.productID = device.productId;
  entry.productVers = device.productVersion;
  setEntryText(entry.vendorName, "Aldmoor");
  const DeviceKind* kind = findDeviceKind(device.productId);
  setEntryText(entry.productName, kind != nullptr ? kind->name : "Simulated trackball");
  return entry;
}

}  // namespace

std::optional<SimulatedDevice> parseSimulatedDevice(std::string_view text) {
  const std::size_t first = text.find(':');
  const std::size_t second = text.find(':', first == std::string_view::npos ? first : first + 1);
  if (second == std::string_view::npos)
    return std::nullopt;
  SimulatedDevice device;
  if (!parseHex(text.substr(0, first), 4, &device.vendorId) ||
      !parseHex(text.substr(first + 1, second - first - 1), 4, &device.productId) ||
      !parseHex(text.substr(second + 1), 4, &device.productVersion)) {
    return std::nullopt;
  }
  return device;
}

std::optional<std::vector<SimulatedDevice>> parseSimulatedDevices(std::string_view text) {
  std::vector<SimulatedDevice> devices;
  while (!text.empty()) {
    const std::size_t comma = text.find(',');
    const auto device = parseSimulatedDevice(text.substr(0, comma));
    if (!device || comma + 1 == text.size())
      return std::nullopt;
    devices.push_back(*device);
    text = comma == std::string_view::npos ? std::string_view() : text.substr(comma + 1);
  }
  return devices;
}

Status SimulatedDeviceSource::start(DeviceListener& listener) {
  fListener = &listener;
  for (const SimulatedDevice& device : fPresent) plug(device);
  fPresent.clear();
  return Done{};
}

void SimulatedDeviceSource::plug(const SimulatedDevice& device) {
  fPlugged.push_back({"simulated-" + std::to_string(fNextNumber++), device});
  fListener->deviceAttached({fPlugged.back().id, entryOf(device)});
}

bool SimulatedDeviceSource::unplug(const SimulatedDevice& device) {
  const auto found = std::find_if(fPlugged.begin(), fPlugged.end(),
                                  [&](const Plugged& plugged) { return plugged.device == device; });
  if (found == fPlugged.end())
    return false;
  const std::string id = found->id;
  fPlugged.erase(found);
  fListener->deviceDetached(id);
  return true;
}

}  // namespace veltrix
