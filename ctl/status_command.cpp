#include <iostream>

#include "ctl/command_catalogue.h"
#include "ctl/commands.h"
#include "ctl/driver_words.h"
#include "ctl/helper_properties.h"
#include "ctl/hex_ids.h"
#include "ctl/outcome.h"
#include "helperlink/device_kinds.h"

namespace veltrix::ctl {
namespace {

std::uint16_t idAt(const Json& device, std::size_t index) {
  return device.at(index).get<std::uint16_t>();
}

Json deviceOf(const Json& device) {
  return {{"id", device.at(0)},         {"vendor", device.at(1)},    {"product", device.at(2)},
          {"version", device.at(3)},    {"interface", device.at(4)}, {"vendorName", device.at(5)},
          {"productName", device.at(6)}};
}

Json recordOf(const Json& record) {
  return {
      {"id", record.at(0)}, {"entryIndex", record.at(1)}, {"global", record.at(2)}, {"record", record.at(3)}};
}

Json driverDeviceOf(const Json& device) {
  return {{"number", device.at(0)},  {"vendor", device.at(1)},    {"product", device.at(2)},
          {"version", device.at(3)}, {"condition", device.at(4)}, {"error", device.at(5)}};
}

// An earlier helper has no such property.
Json problemsOf(const Json& properties) {
  CommandTitles titles;
  Json problems = Json::array();
  for (const auto& problem : properties.value("CommandProblems", Json::array())) {
    const auto command = problem.at(0).get<std::uint16_t>();
    problems.push_back({{"command", command}, {"title", titles.of(command)}, {"reason", problem.at(1)}});
  }
  return problems;
}

// The same properties with names for what the bus carries by position.
Json named(const Json& properties) {
  Json json = properties;
  for (auto& device : json["Devices"]) {
    device = deviceOf(device);
  }
  for (auto& record : json["Records"]) {
    record = recordOf(record);
  }
  for (auto& device : json["DriverDevices"]) {
    device = driverDeviceOf(device);
  }
  const Json last = json.at("LastJump");
  json["LastJump"] = {{"dialogs", last.at(0)}, {"outcome", last.at(1)}};
  json["CommandProblems"] = problemsOf(properties);
  return json;
}

std::string textOf(const Json& value) {
  return value.is_string() ? value.get<std::string>() : value.dump();
}

// The trackball as the driver has it: those that are alike have no other order than that of their coming.
const Json* findDriverDevice(const Json& properties, std::size_t index) {
  const auto isAlike = [&](const Json& device, const Json& other) {
    return idAt(device, 1) == idAt(other, 1) && idAt(device, 2) == idAt(other, 2) &&
           idAt(device, 3) == idAt(other, 3);
  };
  const Json& devices = properties.at("Devices");
  std::size_t before = 0;
  for (std::size_t i = 0; i < index; ++i) {
    before += isAlike(devices.at(i), devices.at(index)) ? 1 : 0;
  }
  for (const Json& device : properties.at("DriverDevices")) {
    if (isAlike(device, devices.at(index)) && before-- == 0) {
      return &device;
    }
  }
  return nullptr;
}

void printCondition(const Json& properties, std::size_t index) {
  const std::string state = textOf(properties.at("DriverState"));
  if (state != "connected" && state != "no-outputs") {
    return;
  }
  const Json* device = findDriverDevice(properties, index);
  std::cout << "  driver: "
            << (device == nullptr ? "has not found it"
                                  : driverConditionText(textOf(device->at(4)), device->at(5).get<int>()))
            << '\n';
}

void printDevice(const Json& device, const Json& record) {
  const auto* kind = findDeviceKind(idAt(device, 2));
  std::cout << deviceIdsText({idAt(device, 1), idAt(device, 2), idAt(device, 3)}) << "  "
            << (kind != nullptr ? kind->name : "unknown kind") << "  (" << textOf(device.at(0)) << ")\n";
  if (record.at(3).get<std::string>().empty()) {
    std::cout << "  no record: no entry of the settings is for it\n";
    return;
  }
  std::cout << "  record of devices/" << record.at(1).dump()
            << (record.at(2).get<bool>() ? ", the entry for every device" : "") << "\n  "
            << textOf(record.at(3)) << '\n';
}

std::string jumpText(const Json& properties) {
  const Json& last = properties.at("LastJump");
  std::string text = textOf(properties.at("JumpState"));
  if (const auto outcome = textOf(last.at(1)); !outcome.empty()) {
    text += ", dialogs: " + last.at(0).dump() + ", the last: " + outcome;
  }
  return text;
}

void print(const Json& properties) {
  std::cout << "VeltrixHelper " << textOf(properties.at("Version"))
            << (properties.at("Simulated").get<bool>() ? ", with simulated trackballs" : "") << '\n';
  std::cout << "settings: " << textOf(properties.at("SettingsState")) << ", "
            << textOf(properties.at("SettingsPath")) << '\n';
  if (const auto problem = textOf(properties.at("SettingsError")); !problem.empty()) {
    std::cout << "problem: " << problem << '\n';
  }
  std::cout << "window open: " << (properties.at("PaneShown").get<bool>() ? "yes" : "no")
            << "\naccessibility: " << (properties.at("AccessibilityGranted").get<bool>() ? "yes" : "no")
            << "\njumping: " << jumpText(properties)
            << "\nlast message: " << textOf(properties.at("LastMessage")) << '\n';
  std::cout << "driver: "
            << driverText(textOf(properties.at("DriverState")), textOf(properties.at("DriverVersion")),
                          properties.at("DriverError").get<int>())
            << '\n';
  if (const Json problems = problemsOf(properties); !problems.empty()) {
    std::cout << "last command that failed: " << textOf(problems.back().at("title")) << ": "
              << textOf(problems.back().at("reason")) << '\n';
  }
  const Json& devices = properties.at("Devices");
  const Json& records = properties.at("Records");
  for (std::size_t i = 0; i < devices.size() && i < records.size(); ++i) {
    printDevice(devices.at(i), records.at(i));
    printCondition(properties, i);
  }
  if (devices.empty()) {
    std::cout << "No trackball is connected.\n";
  }
}

int run(const Context& context) {
  const auto properties = readHelperProperties();
  if (!properties) {
    return fail(kNotFound, properties.error().message);
  }
  try {
    if (context.json) {
      std::cout << jsonText(named(properties.value()));
    } else {
      print(properties.value());
    }
  } catch (const Json::exception&) {
    return fail(kNotFound, "VeltrixHelper answers in a form that this version does not know");
  }
  return kDone;
}

}  // namespace

void addStatusCommand(CommandLine app, Context& context) {
  app.addCommand("status", "Show what the running helper knows: driver, devices, records, settings")
      .does([&context] { context.exitCode = run(context); });
}

}  // namespace veltrix::ctl
