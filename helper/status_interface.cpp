#include "helper/status_interface.h"

#include <systemd/sd-bus.h>

#include <cstring>
#include <vector>

#include "helper/device_entry.h"
#include "helper/version.h"

namespace veltrix {

namespace {

using Reply = sd_bus_message*;

int appendText(Reply reply, const std::string& text) {
  return sd_bus_message_append(reply, "s", busText(text).c_str());
}

int appendFlag(Reply reply, bool flag) {
  return sd_bus_message_append(reply, "b", static_cast<int>(flag));
}

std::string codeText(std::uint32_t code) {
  return {static_cast<char>(code >> 24U), static_cast<char>(code >> 16U), static_cast<char>(code >> 8U),
          static_cast<char>(code)};
}

int appendDevice(Reply reply, const ConnectedDevice& device) {
  const VeltrixDeviceEntry& entry = device.found.entry;
  return sd_bus_message_append(reply, "(sqqqqss)", busText(device.found.id).c_str(), entry.vendorID,
                               entry.productID, entry.productVers, entry.interfaceNum,
                               busText(entryText(entry.vendorName)).c_str(),
                               busText(entryText(entry.productName)).c_str());
}

int appendRecord(Reply reply, const ConnectedDevice& device) {
  const DeviceRecord& chosen = device.record;
  int result = sd_bus_message_open_container(reply, 'r', "sibay");
  if (result >= 0) {
    result = sd_bus_message_append(reply, "sib", busText(device.found.id).c_str(), chosen.entryIndex,
                                   static_cast<int>(chosen.isGlobal));
  }
  if (result >= 0) {
    const void* bytes = chosen.record ? &*chosen.record : nullptr;
    result = sd_bus_message_append_array(reply, 'y', bytes, chosen.record ? sizeof(DriverRecord) : 0);
  }
  return result < 0 ? result : sd_bus_message_close_container(reply);
}

int appendDevices(Reply reply, const HelperCore& core, const char* type,
                  int (*append)(Reply, const ConnectedDevice&)) {
  int result = sd_bus_message_open_container(reply, 'a', type);
  for (std::size_t i = 0; result >= 0 && i < VeltrixDeviceCount(core.deviceList()); ++i) {
    result = append(reply, core.devices()[i]);
  }
  return result < 0 ? result : sd_bus_message_close_container(reply);
}

const char* inForceText(SettingsInForce inForce) {
  switch (inForce) {
    case SettingsInForce::kUser:
      return "user";
    case SettingsInForce::kFactory:
      return "factory";
    case SettingsInForce::kNone:
      break;
  }
  return "none";
}

// Writes the value of one property.
using Writer = int (*)(Reply reply, const StatusInterface& status, const HelperCore& core);

template <Writer write>
int get(sd_bus* /*bus*/, const char* /*path*/, const char* /*interface*/, const char* /*property*/,
        Reply reply, void* status, sd_bus_error* /*error*/) {
  const auto& self = *static_cast<StatusInterface*>(status);
  return write(reply, self, self.core());
}

// For what depends on the settings. The others do not settle: telling of a message would else read the
// settings at each message of a burst.
template <Writer write>
int getSettled(sd_bus* bus, const char* path, const char* interface, const char* property, Reply reply,
               void* status, sd_bus_error* error) {
  static_cast<StatusInterface*>(status)->core().settle();
  return get<write>(bus, path, interface, property, reply, status, error);
}

int writeVersion(Reply reply, const StatusInterface& /*status*/, const HelperCore& /*core*/) {
  return appendText(reply, kHelperVersion);
}
int writeSimulated(Reply reply, const StatusInterface& status, const HelperCore& /*core*/) {
  return appendFlag(reply, status.simulated());
}
int writeDevices(Reply reply, const StatusInterface& /*status*/, const HelperCore& core) {
  return appendDevices(reply, core, "(sqqqqss)", appendDevice);
}
int writeRecords(Reply reply, const StatusInterface& /*status*/, const HelperCore& core) {
  return appendDevices(reply, core, "(sibay)", appendRecord);
}
int writeAccessibility(Reply reply, const StatusInterface& /*status*/, const HelperCore& core) {
  return appendFlag(reply, (core.deviceList().helperState & kVeltrixHelperStateAccessibility) != 0);
}
int writeSettingsPath(Reply reply, const StatusInterface& /*status*/, const HelperCore& core) {
  return appendText(reply, core.settings().userPath());
}
int writeSettingsState(Reply reply, const StatusInterface& /*status*/, const HelperCore& core) {
  return appendText(reply, inForceText(core.settings().inForce()));
}
int writeSettingsError(Reply reply, const StatusInterface& /*status*/, const HelperCore& core) {
  return appendText(reply, core.settings().error());
}
int writeGeneration(Reply reply, const StatusInterface& /*status*/, const HelperCore& core) {
  return sd_bus_message_append(reply, "u", core.generation());
}
int writePaneShown(Reply reply, const StatusInterface& /*status*/, const HelperCore& core) {
  return appendFlag(reply, core.paneShown());
}
int writeLastMessage(Reply reply, const StatusInterface& /*status*/, const HelperCore& core) {
  return appendText(reply, core.recentMessages().empty() ? "" : codeText(core.recentMessages().back()));
}
int writeRecentMessages(Reply reply, const StatusInterface& /*status*/, const HelperCore& core) {
  int result = sd_bus_message_open_container(reply, 'a', "s");
  for (const std::uint32_t message : core.recentMessages()) {
    if (result >= 0)
      result = appendText(reply, codeText(message));
  }
  return result < 0 ? result : sd_bus_message_close_container(reply);
}

int writeDriverState(Reply reply, const StatusInterface& status, const HelperCore& /*core*/) {
  return appendText(reply, driverStateText(status.driver().state));
}
int writeDriverVersion(Reply reply, const StatusInterface& status, const HelperCore& /*core*/) {
  return appendText(reply, status.driver().version);
}
int writeDriverError(Reply reply, const StatusInterface& status, const HelperCore& /*core*/) {
  return sd_bus_message_append(reply, "i", status.driver().error);
}
int writeDriverDevices(Reply reply, const StatusInterface& status, const HelperCore& /*core*/) {
  int result = sd_bus_message_open_container(reply, 'a', "(uqqqsi)");
  for (const DriverDevice& device : status.driver().devices) {
    if (result >= 0) {
      result = sd_bus_message_append(reply, "(uqqqsi)", device.number, device.address.vendor,
                                     device.address.product, device.address.productVersion,
                                     deviceConditionText(device.condition), device.error);
    }
  }
  return result < 0 ? result : sd_bus_message_close_container(reply);
}

int writeJumpState(Reply reply, const StatusInterface& status, const HelperCore& /*core*/) {
  return appendText(reply, jumpStateText(status.jump().state));
}
int writeLastJump(Reply reply, const StatusInterface& status, const HelperCore& /*core*/) {
  const JumpReport& jump = status.jump();
  return sd_bus_message_append(reply, "(us)", jump.dialogs, jumpOutcomeText(jump.outcome));
}

int writeCommandProblems(Reply reply, const StatusInterface& status, const HelperCore& /*core*/) {
  int result = sd_bus_message_open_container(reply, 'a', "(qs)");
  for (const CommandProblem& problem : status.problems()) {
    if (result >= 0)
      result = sd_bus_message_append(reply, "(qs)", problem.command, busText(problem.reason).c_str());
  }
  return result < 0 ? result : sd_bus_message_close_container(reply);
}

constexpr std::uint64_t kChanging = SD_BUS_VTABLE_PROPERTY_EMITS_CHANGE;
constexpr std::uint64_t kConstant = SD_BUS_VTABLE_PROPERTY_CONST;

constexpr sd_bus_vtable kHelperTable[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_PROPERTY("Version", "s", get<writeVersion>, 0, kConstant),
    SD_BUS_PROPERTY("Simulated", "b", get<writeSimulated>, 0, kConstant),
    SD_BUS_PROPERTY("Devices", "a(sqqqqss)", get<writeDevices>, 0, kChanging),
    SD_BUS_PROPERTY("Records", "a(sibay)", getSettled<writeRecords>, 0, kChanging),
    SD_BUS_PROPERTY("AccessibilityGranted", "b", get<writeAccessibility>, 0, kChanging),
    SD_BUS_PROPERTY("SettingsPath", "s", get<writeSettingsPath>, 0, kConstant),
    SD_BUS_PROPERTY("SettingsState", "s", getSettled<writeSettingsState>, 0, kChanging),
    SD_BUS_PROPERTY("SettingsError", "s", getSettled<writeSettingsError>, 0, kChanging),
    SD_BUS_PROPERTY("Generation", "u", getSettled<writeGeneration>, 0, kChanging),
    SD_BUS_PROPERTY("PaneShown", "b", get<writePaneShown>, 0, kChanging),
    SD_BUS_PROPERTY("LastMessage", "s", get<writeLastMessage>, 0, kChanging),
    SD_BUS_PROPERTY("RecentMessages", "as", get<writeRecentMessages>, 0, kChanging),
    SD_BUS_PROPERTY("DriverState", "s", get<writeDriverState>, 0, kChanging),
    SD_BUS_PROPERTY("DriverVersion", "s", get<writeDriverVersion>, 0, kChanging),
    SD_BUS_PROPERTY("DriverError", "i", get<writeDriverError>, 0, kChanging),
    SD_BUS_PROPERTY("DriverDevices", "a(uqqqsi)", get<writeDriverDevices>, 0, kChanging),
    SD_BUS_PROPERTY("JumpState", "s", get<writeJumpState>, 0, kChanging),
    SD_BUS_PROPERTY("LastJump", "(us)", get<writeLastJump>, 0, kChanging),
    SD_BUS_PROPERTY("CommandProblems", "a(qs)", get<writeCommandProblems>, 0, kChanging),
    SD_BUS_VTABLE_END,
};

}  // namespace

Status StatusInterface::publish(sd_bus* bus) {
  sd_bus_slot* slot = nullptr;
  const int result =
      sd_bus_add_object_vtable(bus, &slot, kHelperObject, kHelperInterface, kHelperTable, this);
  fSlot.reset(slot);
  if (result < 0) {
    return Error{-result, std::string("cannot publish the status: ") + std::strerror(-result), std::nullopt};
  }
  fBus = bus;
  return Done{};
}

void StatusInterface::setDriver(const DriverReport& driver) {
  if (driver == fDriver)
    return;
  fDriver = driver;
  announce({"DriverState", "DriverVersion", "DriverError", "DriverDevices"});
}

void StatusInterface::setJump(const JumpReport& jump) {
  fJump = jump;
  announce({"JumpState", "LastJump"});
}

void StatusInterface::addProblem(const CommandProblem& problem) {
  if (fProblems.size() == kShownProblems)
    fProblems.pop_front();
  fProblems.push_back(problem);
  announce({"CommandProblems"});
}

void StatusInterface::announce(std::initializer_list<const char*> properties) const {
  if (fBus == nullptr)
    return;
  std::vector<char*> names;
  for (const char* name : properties) names.push_back(const_cast<char*>(name));
  names.push_back(nullptr);
  sd_bus_emit_properties_changed_strv(fBus, kHelperObject, kHelperInterface, names.data());
}

}  // namespace veltrix
