#include "tests/helper/desktop/fake_service.h"

#include <gtest/gtest.h>
#include <systemd/sd-bus.h>

#include <cstring>

namespace veltrix::testing {
namespace {

constexpr const char* kPlayerPath = "/org/mpris/MediaPlayer2";
constexpr const char* kPlayer = "org.mpris.MediaPlayer2.Player";

int callArrived(sd_bus_message* call, void* service, sd_bus_error* /*error*/) {
  return static_cast<FakeService*>(service)->handle(call);
}

std::string read(sd_bus_message* message, char type) {
  union {
    const char* text;
    int boolean;
    std::int32_t number;
    std::uint32_t size;
    std::int64_t large;
  } value{};
  sd_bus_message_read_basic(message, type, &value);
  switch (type) {
    case 's':
      return '"' + std::string(value.text) + '"';
    case 'b':
      return value.boolean != 0 ? "true" : "false";
    case 'i':
      return std::to_string(value.number);
    case 'u':
      return std::to_string(value.size) + 'u';
    case 'x':
      return std::to_string(value.large);
    default:
      return "?";
  }
}

std::string options(sd_bus_message* message) {
  std::string text = "{";
  sd_bus_message_enter_container(message, 'a', "{sv}");
  while (sd_bus_message_enter_container(message, 'e', "sv") > 0) {
    text += read(message, 's') + ": ";
    sd_bus_message_enter_container(message, 'v', "b");
    text += read(message, 'b');
    sd_bus_message_exit_container(message);
    sd_bus_message_exit_container(message);
  }
  return text + "}";
}

std::string arguments(sd_bus_message* message) {
  std::string text;
  const std::string signature = sd_bus_message_get_signature(message, 1);
  for (std::size_t i = 0; i < signature.size();) {
    const bool isOptions = signature.compare(i, 5, "a{sv}") == 0;
    text += (i == 0 ? "" : ", ") + (isOptions ? options(message) : read(message, signature[i]));
    i += isOptions ? 5 : 1;
  }
  return text;
}

}  // namespace

FakeService::FakeService(sd_event* loop, const std::string& address, const char* name) {
  auto bus = openSessionBus(address, std::chrono::steady_clock::now() + std::chrono::seconds(10));
  EXPECT_TRUE(bus) << (bus ? "" : bus.error().message);
  fBus = std::move(bus.value());
  EXPECT_GE(sd_bus_request_name(fBus.get(), name, 0), 0);
  EXPECT_GE(sd_bus_add_filter(fBus.get(), nullptr, callArrived, this), 0);
  EXPECT_GE(sd_bus_attach_event(fBus.get(), loop, SD_EVENT_PRIORITY_NORMAL), 0);
}

FakeService::~FakeService() {
  sd_bus_detach_event(fBus.get());
}

void FakeService::refuse(const char* error, const char* text) {
  fError = error;
  fErrorText = text;
}

void FakeService::changeText(const std::string& property, const std::string& value) {
  fTexts[property] = value;
  sd_bus_emit_signal(fBus.get(), kPlayerPath, "org.freedesktop.DBus.Properties", "PropertiesChanged",
                     "sa{sv}as", kPlayer, 2, "Volume", "d", 0.5, property.c_str(), "s", value.c_str(), 0);
  sd_bus_flush(fBus.get());
}

int FakeService::answerProperty(sd_bus_message* call) {
  const char* interface = nullptr;
  const char* property = nullptr;
  sd_bus_message_read(call, "ss", &interface, &property);
  if (fBooleans.count(property) != 0) {
    return sd_bus_reply_method_return(call, "v", "b", fBooleans[property] ? 1 : 0);
  }
  return sd_bus_reply_method_return(call, "v", "s", fTexts[property].c_str());
}

int FakeService::handle(sd_bus_message* call) {
  if (sd_bus_message_is_method_call(call, nullptr, nullptr) <= 0) {
    return 0;
  }
  const std::string interface = sd_bus_message_get_interface(call);
  if (fIsSilent) {
    return 1;
  }
  if (interface == "org.freedesktop.DBus.Properties") {
    answerProperty(call);
    return 1;
  }
  fCalls.push_back(sd_bus_message_get_path(call) + (' ' + interface) + '.' + sd_bus_message_get_member(call) +
                   '(' + arguments(call) + ')' + (sd_bus_message_get_auto_start(call) > 0 ? " starts" : "") +
                   (sd_bus_message_get_allow_interactive_authorization(call) > 0 ? " asks" : ""));
  if (!fError.empty()) {
    sd_bus_reply_method_errorf(call, fError.c_str(), "%s", fErrorText.c_str());
  } else {
    sd_bus_reply_method_return(call, "");
  }
  return 1;
}

}  // namespace veltrix::testing
