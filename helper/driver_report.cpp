#include "helper/driver_report.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>

namespace veltrix {

namespace {

constexpr const char* kDriverUnit = "veltrix-driver.service";

DriverState stateOf(const StatusPacket& packet) {
  switch (static_cast<DriverAnswer>(packet.answer)) {
    case DriverAnswer::kAccepted:
      return packet.outputs != 0 ? DriverState::kConnected : DriverState::kNoOutputs;
    case DriverAnswer::kNotTheActiveUser:
      return DriverState::kOtherUser;
    case DriverAnswer::kStopping:
      return DriverState::kNotRunning;
    case DriverAnswer::kReplaced:
      return DriverState::kReplaced;
    case DriverAnswer::kBrokenRule:
      break;
  }
  return DriverState::kIncompatible;
}

}  // namespace

const char* driverStateText(DriverState state) {
  switch (state) {
    case DriverState::kUnused:
      return "unused";
    case DriverState::kConnecting:
      return "connecting";
    case DriverState::kConnected:
      return "connected";
    case DriverState::kNoOutputs:
      return "no-outputs";
    case DriverState::kNotInstalled:
      return "not-installed";
    case DriverState::kNotRunning:
      return "not-running";
    case DriverState::kUnreachable:
      return "unreachable";
    case DriverState::kOtherUser:
      return "other-user";
    case DriverState::kReplaced:
      return "replaced";
    case DriverState::kIncompatible:
      break;
  }
  return "incompatible";
}

const char* deviceConditionText(DeviceCondition condition) {
  switch (condition) {
    case DeviceCondition::kDetached:
      return "detached";
    case DeviceCondition::kLeftAlone:
      return "left-alone";
    case DeviceCondition::kWaiting:
      return "waiting";
    case DeviceCondition::kTaken:
      return "taken";
    case DeviceCondition::kBusy:
      return "busy";
    case DeviceCondition::kFailed:
      break;
  }
  return "failed";
}

void DriverReport::take(const StatusPacket& packet) {
  const DriverState told = stateOf(packet);
  if (told != DriverState::kConnected && told != DriverState::kNoOutputs) {
    end(told);
    return;
  }
  state = told;
  error = 0;
  version.assign(packet.driverVersion, strnlen(packet.driverVersion, sizeof packet.driverVersion));
}

void DriverReport::take(const DeviceStatePacket& packet) {
  const DriverDevice told{packet.number, packet.device, static_cast<DeviceCondition>(packet.condition),
                          packet.error};
  const auto known = std::find_if(devices.begin(), devices.end(),
                                  [&](const DriverDevice& device) { return device.number == told.number; });
  if (told.condition == DeviceCondition::kDetached) {
    if (known != devices.end())
      devices.erase(known);
  } else if (known != devices.end()) {
    *known = told;
  } else {
    devices.push_back(told);
  }
}

void DriverReport::end(DriverState why, int errorCode) {
  *this = {.state = why, .error = errorCode, .version = {}, .devices = {}};
}

DriverState driverStateAfter(int connectError, bool isInstalled) {
  switch (connectError) {
    case ENOENT:
    case ENOTDIR:
    case ECONNREFUSED:
      return isInstalled ? DriverState::kNotRunning : DriverState::kNotInstalled;
    case EAGAIN:
    case ECONNRESET:
      return DriverState::kNotRunning;
    default:
      return DriverState::kUnreachable;
  }
}

bool driverIsInstalled(const std::vector<std::string>& unitFolders) {
  return std::any_of(unitFolders.begin(), unitFolders.end(), [](const std::string& folder) {
    std::error_code error;
    return std::filesystem::exists(folder + "/" + kDriverUnit, error);
  });
}

std::vector<std::string> systemUnitFolders() {
  return {"/etc/systemd/system", "/run/systemd/system", "/usr/local/lib/systemd/system",
          "/usr/lib/systemd/system", "/lib/systemd/system"};
}

}  // namespace veltrix
