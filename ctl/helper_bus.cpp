#include "ctl/helper_bus.h"

#include <systemd/sd-bus.h>

#include <cerrno>
#include <cstring>

#include "ctl/outcome.h"

namespace veltrix::ctl {
namespace {

struct BusError {
  sd_bus_error error = SD_BUS_ERROR_NULL;
  BusError() = default;
  ~BusError() { sd_bus_error_free(&error); }
  BusError(const BusError&) = delete;
  BusError& operator=(const BusError&) = delete;

  bool is(const char* name) const { return sd_bus_error_has_name(&error, name) != 0; }
};

std::string reasonOf(const BusError& error, int result) {
  if (error.is(SD_BUS_ERROR_SERVICE_UNKNOWN) || error.is(SD_BUS_ERROR_NAME_HAS_NO_OWNER)) {
    return "VeltrixHelper is not running";
  }
  if (error.is(SD_BUS_ERROR_NO_REPLY) || error.is(SD_BUS_ERROR_TIMEOUT) || result == -ETIMEDOUT) {
    return "VeltrixHelper did not answer in time";
  }
  if (error.is(SD_BUS_ERROR_UNKNOWN_METHOD) || error.is(SD_BUS_ERROR_UNKNOWN_INTERFACE)) {
    return "VeltrixHelper is of another version, which cannot do that";
  }
  const char* text = error.error.message != nullptr ? error.error.message : std::strerror(-result);
  return std::string("VeltrixHelper could not be asked: ") + text;
}

}  // namespace

Result<BusHandle> openHelperBus(BusDeadline deadline) {
  auto bus = openSessionBus({}, deadline);
  if (!bus) {
    return Error{kNotFound, "the session bus cannot be reached: " + bus.error().message, {}};
  }
  return bus;
}

Result<BusMessageHandle> newHelperCall(sd_bus* bus, const char* interface, const char* method) {
  sd_bus_message* call = nullptr;
  int result = sd_bus_message_new_method_call(bus, &call, kHelperName, kHelperObject, interface, method);
  BusMessageHandle owner(call);
  if (result >= 0) {
    result = sd_bus_message_set_auto_start(call, 0);
  }
  if (result < 0) {
    return Error{kNotFound, reasonOf({}, result), {}};
  }
  return owner;
}

Result<BusMessageHandle> callHelper(sd_bus* bus, sd_bus_message* call, BusDeadline deadline) {
  BusError error;
  sd_bus_message* reply = nullptr;
  const int result = sd_bus_call(bus, call, microsecondsUntil(deadline), &error.error, &reply);
  BusMessageHandle owner(reply);
  if (result < 0) {
    return Error{kNotFound, reasonOf(error, result), {}};
  }
  return owner;
}

}  // namespace veltrix::ctl
