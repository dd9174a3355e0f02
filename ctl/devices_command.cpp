#include <CLI/CLI.hpp>
#include <cstring>
#include <iostream>
#include <span>

#include "ctl/commands.h"
#include "ctl/hex_ids.h"
#include "ctl/outcome.h"
#include "ctl/plist_json.h"
#include "helperlink/device_kinds.h"
#include "helperlink/helper_messaging.h"
#include "platform/typed_events.h"

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

std::string reasonOf(std::int32_t status) {
  switch (status) {
    case kEventNoSuchProcess:
      return "VeltrixHelper is not running";
    case kEventTimedOut:
      return "VeltrixHelper did not answer in time";
    case kEventConnectionInvalid:
      return "there is no session bus, or VeltrixHelper ended before it answered";
    default:
      return "VeltrixHelper could not be asked (status " + std::to_string(status) + ")";
  }
}

int run(const Context& context) {
  VeltrixDeviceList list{};
  if (const auto status = VeltrixGetConnectedDevices(&list); status != 0) {
    return fail(kNotFound, reasonOf(status));
  }
  Json json = Json::array();
  std::string text;
  for (const auto& device : std::span(list.device, VeltrixDeviceCount(list))) {
    json.push_back(jsonOfDevice(device));
    text += lineOf(device);
  }
  std::cout << (context.json ? jsonText(json) : text.empty() ? "No trackball is connected.\n" : text);
  return kDone;
}

}  // namespace

void addDevicesCommand(CLI::App& app, Context& context) {
  app.add_subcommand("devices", "List the connected trackballs, as the helper sees them")
      ->callback([&context] { context.exitCode = run(context); });
}

}  // namespace veltrix::ctl
