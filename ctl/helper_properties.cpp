#include "ctl/helper_properties.h"

#include <systemd/sd-bus.h>

#include <array>
#include <cerrno>
#include <cstring>

#include "ctl/hex_ids.h"
#include "ctl/outcome.h"
#include "platform/session_bus.h"

namespace veltrix::ctl {
namespace {

constexpr const char* kHelperName = "com.aldmoor.VeltrixHelper";
constexpr const char* kHelperObject = "/com/aldmoor/VeltrixHelper";
constexpr const char* kHelperInterface = "com.aldmoor.VeltrixHelper1";
constexpr std::chrono::seconds kPatience{2};

struct BusError {
  sd_bus_error error = SD_BUS_ERROR_NULL;
  BusError() = default;
  ~BusError() { sd_bus_error_free(&error); }
  BusError(const BusError&) = delete;
  BusError& operator=(const BusError&) = delete;

  bool is(const char* name) const { return sd_bus_error_has_name(&error, name) != 0; }
};

// What follows in the message, whatever it is; null for types that the helper does not send.
Json readValue(sd_bus_message* message);

Json readContainer(sd_bus_message* message, char type, const char* contents) {
  if (type == 'a' && std::strcmp(contents, "y") == 0) {
    const void* bytes = nullptr;
    std::size_t count = 0;
    sd_bus_message_read_array(message, 'y', &bytes, &count);
    return hexBytes({static_cast<const unsigned char*>(bytes), count});
  }
  Json items = Json::array();
  if (sd_bus_message_enter_container(message, type, contents) <= 0) {
    return nullptr;
  }
  while (sd_bus_message_at_end(message, 0) == 0) {
    items.push_back(readValue(message));
  }
  sd_bus_message_exit_container(message);
  return type == 'v' && !items.empty() ? items.front() : items;
}

template <typename T>
T readBasic(sd_bus_message* message, char type) {
  T value{};
  sd_bus_message_read_basic(message, type, &value);
  return value;
}

Json readValue(sd_bus_message* message) {
  char type = 0;
  const char* contents = nullptr;
  if (sd_bus_message_peek_type(message, &type, &contents) <= 0) {
    return nullptr;
  }
  switch (type) {
    case 's':
      return readBasic<const char*>(message, type);
    case 'b':
      return readBasic<int>(message, type) != 0;
    case 'q':
      return readBasic<std::uint16_t>(message, type);
    case 'i':
      return readBasic<std::int32_t>(message, type);
    case 'u':
      return readBasic<std::uint32_t>(message, type);
    case 'a':
    case 'r':
    case 'v':
      return readContainer(message, type, contents);
    default:
      sd_bus_message_skip(message, nullptr);
      return nullptr;
  }
}

Json readProperties(sd_bus_message* reply) {
  Json properties = Json::object();
  if (sd_bus_message_enter_container(reply, 'a', "{sv}") <= 0) {
    return properties;
  }
  while (sd_bus_message_enter_container(reply, 'e', "sv") > 0) {
    const std::string name = readBasic<const char*>(reply, 's');
    properties[name] = readValue(reply);
    sd_bus_message_exit_container(reply);
  }
  return properties;
}

std::string reasonOf(const BusError& error, int result) {
  if (error.is(SD_BUS_ERROR_SERVICE_UNKNOWN) || error.is(SD_BUS_ERROR_NAME_HAS_NO_OWNER)) {
    return "VeltrixHelper is not running";
  }
  if (error.is(SD_BUS_ERROR_NO_REPLY) || error.is(SD_BUS_ERROR_TIMEOUT) || result == -ETIMEDOUT) {
    return "VeltrixHelper did not answer in time";
  }
  const char* text = error.error.message != nullptr ? error.error.message : std::strerror(-result);
  return std::string("VeltrixHelper could not be asked: ") + text;
}

}  // namespace

Result<Json> readHelperProperties() {
  const auto deadline = std::chrono::steady_clock::now() + kPatience;
  const auto bus = openSessionBus({}, deadline);
  if (!bus) {
    return Error{kNotFound, "the session bus cannot be reached: " + bus.error().message, {}};
  }
  sd_bus_message* call = nullptr;
  int result = sd_bus_message_new_method_call(bus.value().get(), &call, kHelperName, kHelperObject,
                                              "org.freedesktop.DBus.Properties", "GetAll");
  const BusMessageHandle callOwner(call);
  if (result >= 0) {
    result = sd_bus_message_set_auto_start(call, 0);
  }
  if (result >= 0) {
    result = sd_bus_message_append(call, "s", kHelperInterface);
  }
  BusError error;
  sd_bus_message* reply = nullptr;
  if (result >= 0) {
    result = sd_bus_call(bus.value().get(), call, microsecondsUntil(deadline), &error.error, &reply);
  }
  const BusMessageHandle replyOwner(reply);
  if (result < 0) {
    return Error{kNotFound, reasonOf(error, result), {}};
  }
  return readProperties(reply);
}

}  // namespace veltrix::ctl
