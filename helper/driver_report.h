#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "driverlink/packets.h"

namespace veltrix {

// Whether the driver is there, and why not.
enum class DriverState {
  kUnused,      // the trackballs are simulated ones
  kConnecting,  // it has not answered yet
  kConnected,   // it works
  kNoOutputs,   // it has no virtual pointer and keyboard, so it leaves every trackball alone
  kNotInstalled,
  kNotRunning,
  kUnreachable,   // its socket refuses; the report has the errno
  kOtherUser,     // somebody else, or nobody, is at the screen
  kReplaced,      // another helper of this user has taken the place
  kIncompatible,  // driver and helper do not understand each other
};

// As the status interface writes it.
const char* driverStateText(DriverState state);

// One trackball as the driver sees it.
struct DriverDevice {
  std::uint32_t number = 0;
  DeviceAddress address{};
  DeviceCondition condition = DeviceCondition::kLeftAlone;
  int error = 0;  // an errno with kBusy and kFailed

  friend bool operator==(const DriverDevice& a, const DriverDevice& b) = default;
};

const char* deviceConditionText(DeviceCondition condition);

// What there is to say of the driver.
struct DriverReport {
  DriverState state = DriverState::kUnused;
  int error = 0;                      // an errno with kUnreachable
  std::string version;                // empty while it is not connected
  std::vector<DriverDevice> devices;  // in the order in which they were told

  // Connected means also that its packets are taken.
  bool isConnected() const { return state == DriverState::kConnected || state == DriverState::kNoOutputs; }
  void take(const StatusPacket& packet);
  void take(const DeviceStatePacket& packet);
  // The connection is over, or there was none, for this reason.
  void end(DriverState why, int errorCode = 0);

  friend bool operator==(const DriverReport& a, const DriverReport& b) = default;
};

// What a connection that could not be made says of the driver, by the errno of the attempt.
DriverState driverStateAfter(int connectError, bool isInstalled);

// Whether the service manager has a unit for the driver, in one of these folders.
bool driverIsInstalled(const std::vector<std::string>& unitFolders);
std::vector<std::string> systemUnitFolders();

}  // namespace veltrix
