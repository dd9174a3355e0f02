#include <cstring>
#include <iostream>
#include <span>

#include "ctl/commands.h"
#include "ctl/connected_devices.h"
#include "ctl/hex_ids.h"
#include "ctl/outcome.h"
#include "ctl/plist_json.h"
#include "helperlink/device_kinds.h"

namespace veltrix::ctl {
namespace {

// A name of the list: ends at the first zero byte or with its field.
template <std::size_t N>
std::string nameIn(const char (&field)[N]) {
  return {field, strnlen(field, N)};
}

std::string idsOf(const VeltrixDeviceEntry& device) {
  return deviceIdsText({device.vendorID, device.productID, device.productVers});
}

const char* kindNameOf(const VeltrixDeviceEntry& device) {
  const auto* kind = findDeviceKind(device.productID);
  return kind != nullptr ? kind->name : "";
}

Json jsonOfDevice(const VeltrixDeviceEntry& device) {
  return {{"id", idsOf(device)},
          {"vendor", device.vendorID},
          {"product", device.productID},
          {"version", device.productVers},
          {"interface", device.interfaceNum},
          {"vendorName", nameIn(device.vendorName)},
          {"productName", nameIn(device.productName)},
          {"kind", kindNameOf(device)},
          {"deviceTab", deviceTabFor(device.productID, device.productVers)}};
}

std::string lineOf(const VeltrixDeviceEntry& device) {
  const std::string kind = kindNameOf(device);
  return idsOf(device) + "  " + (kind.empty() ? "unknown kind" : kind) + "  Rev. " +
         versionText(device.productVers) + "  \"" + nameIn(device.vendorName) + "\" \"" +
         nameIn(device.productName) + "\"\n";
}

int run(const Context& context) {
  const auto list = connectedDevices();
  if (!list) {
    return fail(kNotFound, list.error().message);
  }
  Json json = Json::array();
  std::string text;
  for (const auto& device : std::span(list.value().device, VeltrixDeviceCount(list.value()))) {
    json.push_back(jsonOfDevice(device));
    text += lineOf(device);
  }
  std::cout << (context.json ? jsonText(json) : text.empty() ? "No trackball is connected.\n" : text);
  return kDone;
}

}  // namespace

void addDevicesCommand(CommandLine app, Context& context) {
  app.addCommand("devices", "List the connected trackballs, as the helper sees them").does([&context] {
    context.exitCode = run(context);
  });
}

}  // namespace veltrix::ctl
