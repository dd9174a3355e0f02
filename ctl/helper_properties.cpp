#include "ctl/helper_properties.h"

#include <systemd/sd-bus.h>

#include <cstring>

#include "ctl/helper_bus.h"
#include "ctl/hex_ids.h"
#include "ctl/outcome.h"

namespace veltrix::ctl {
namespace {

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

}  // namespace

Json readPropertyTable(sd_bus_message* message) {
  Json properties = Json::object();
  if (sd_bus_message_enter_container(message, 'a', "{sv}") <= 0) {
    return properties;
  }
  while (sd_bus_message_enter_container(message, 'e', "sv") > 0) {
    const std::string name = readBasic<const char*>(message, 's');
    properties[name] = readValue(message);
    sd_bus_message_exit_container(message);
  }
  return properties;
}

Result<Json> readHelperProperties() {
  const auto deadline = std::chrono::steady_clock::now() + kHelperPatience;
  const auto bus = openHelperBus(deadline);
  return bus ? readHelperProperties(bus.value().get(), deadline) : bus.error();
}

Result<Json> readHelperProperties(sd_bus* bus, BusDeadline deadline) {
  const auto call = newHelperCall(bus, "org.freedesktop.DBus.Properties", "GetAll");
  if (!call || sd_bus_message_append(call.value().get(), "s", kHelperInterface) < 0) {
    return Error{kNotFound, "the question for VeltrixHelper cannot be written", {}};
  }
  const auto reply = callHelper(bus, call.value().get(), deadline);
  return reply ? readPropertyTable(reply.value().get()) : Result<Json>(reply.error());
}

}  // namespace veltrix::ctl
