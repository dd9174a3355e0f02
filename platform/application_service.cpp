#include "platform/application_service.h"

#include <systemd/sd-bus.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <utility>

#include "platform/event_receiver.h"

namespace veltrix {
namespace {

constexpr const char* kInterface = "org.freedesktop.Application";
constexpr const char* kTokenKey = "activation-token";
constexpr const char* kStartupIdKey = "desktop-startup-id";
constexpr std::chrono::milliseconds kConnectLimit{250};
constexpr std::chrono::microseconds kAnswerLimit = std::chrono::seconds(2);

std::string objectPath(const std::string& name) {
  std::string path = "/" + name;
  std::replace(path.begin(), path.end(), '.', '/');
  return path;
}

std::string takeVariable(const char* name) {
  const char* value = std::getenv(name);
  std::string text = value != nullptr ? value : "";
  unsetenv(name);
  return text;
}

// Reads one entry of the platform data; a value that is no text is passed over.
int readEntry(sd_bus_message* call, Activation* activation) {
  const char* key = nullptr;
  int result = sd_bus_message_read(call, "s", &key);
  if (result < 0) {
    return result;
  }
  const char* contents = nullptr;
  result = sd_bus_message_peek_type(call, nullptr, &contents);
  if (result < 0 || std::strcmp(contents, "s") != 0) {
    return result < 0 ? result : sd_bus_message_skip(call, "v");
  }
  const char* value = nullptr;
  result = sd_bus_message_read(call, "v", "s", &value);
  if (result >= 0 && std::string_view(key) == kTokenKey) {
    activation->token = value;
  } else if (result >= 0 && std::string_view(key) == kStartupIdKey) {
    activation->startupId = value;
  }
  return result;
}

int readPlatformData(sd_bus_message* call, Activation* activation) {
  int result = sd_bus_message_enter_container(call, SD_BUS_TYPE_ARRAY, "{sv}");
  if (result < 0) {
    return result;
  }
  while ((result = sd_bus_message_enter_container(call, SD_BUS_TYPE_DICT_ENTRY, "sv")) > 0) {
    result = readEntry(call, activation);
    if (result < 0 || (result = sd_bus_message_exit_container(call)) < 0) {
      return result;
    }
  }
  return result < 0 ? result : sd_bus_message_exit_container(call);
}

// There is but one thing to be asked for: that the window comes to the front. `before` are the types of the
// arguments ahead of the platform data.
int answer(sd_bus_message* call, void* service, const char* before) {
  int result = *before == '\0' ? 0 : sd_bus_message_skip(call, before);
  Activation activation;
  if (result >= 0) {
    result = readPlatformData(call, &activation);
  }
  if (result < 0) {
    return result;
  }
  static_cast<ApplicationService*>(service)->activate(activation);
  return sd_bus_reply_method_return(call, nullptr);
}

int activateMethod(sd_bus_message* call, void* service, sd_bus_error* /*error*/) {
  return answer(call, service, "");
}

int openMethod(sd_bus_message* call, void* service, sd_bus_error* /*error*/) {
  return answer(call, service, "as");
}

int actionMethod(sd_bus_message* call, void* service, sd_bus_error* /*error*/) {
  return answer(call, service, "sav");
}

constexpr sd_bus_vtable kApplicationTable[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_METHOD_WITH_ARGS("Activate", SD_BUS_ARGS("a{sv}", platform_data), SD_BUS_NO_RESULT, activateMethod,
                            SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD_WITH_ARGS("Open", SD_BUS_ARGS("as", uris, "a{sv}", platform_data), SD_BUS_NO_RESULT,
                            openMethod, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD_WITH_ARGS("ActivateAction",
                            SD_BUS_ARGS("s", action_name, "av", parameter, "a{sv}", platform_data),
                            SD_BUS_NO_RESULT, actionMethod, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_VTABLE_END,
};

}  // namespace

Activation takeActivation() {
  return {takeVariable("XDG_ACTIVATION_TOKEN"), takeVariable("DESKTOP_STARTUP_ID")};
}

ApplicationService::ApplicationService(std::string name, std::string busAddress)
    : fName(std::move(name)), fBusAddress(std::move(busAddress)) {}

ApplicationService::~ApplicationService() {
  sd_bus_slot_unref(fSlot);
}

ApplicationInstance ApplicationService::start(const Activation& own) {
  Result<BusHandle> bus = openSessionBus(fBusAddress, std::chrono::steady_clock::now() + kConnectLimit);
  if (!bus) {
    return ApplicationInstance::kUnknown;
  }
  fBus = std::move(bus.value());
  // The object is there before the name, so that whoever sees the name is answered.
  const int added = sd_bus_add_object_vtable(fBus.get(), &fSlot, objectPath(fName).c_str(), kInterface,
                                             kApplicationTable, this);
  const Result<bool> claimed = added < 0 ? Result<bool>(Error{-added, "cannot offer the application", {}})
                                         : claimBusName(fBus.get(), fName);
  if (claimed && claimed.value()) {
    return ApplicationInstance::kOnly;
  }
  const ApplicationInstance instance = claimed ? handOver(own) : ApplicationInstance::kUnknown;
  fSlot = sd_bus_slot_unref(fSlot);
  fBus.reset();
  return instance;
}

ApplicationInstance ApplicationService::handOver(const Activation& own) {
  sd_bus_message* raw = nullptr;
  int result = sd_bus_message_new_method_call(fBus.get(), &raw, fName.c_str(), objectPath(fName).c_str(),
                                              kInterface, "Activate");
  const BusMessageHandle call(raw);
  if (result >= 0) {
    result = sd_bus_message_append(raw, "a{sv}", 2, kTokenKey, "s", own.token.c_str(), kStartupIdKey, "s",
                                   own.startupId.c_str());
  }
  if (result >= 0) {
    result = sd_bus_call(fBus.get(), raw, static_cast<std::uint64_t>(kAnswerLimit.count()), nullptr, nullptr);
  }
  return result < 0 ? ApplicationInstance::kUnknown : ApplicationInstance::kHandedOver;
}

int ApplicationService::descriptor() const {
  return fBus != nullptr ? sd_bus_get_fd(fBus.get()) : -1;
}

bool ApplicationService::process() {
  if (fBus == nullptr) {
    return false;
  }
  int result = 0;
  while ((result = sd_bus_process(fBus.get(), nullptr)) > 0) {
  }
  return result == 0 && sd_bus_is_open(fBus.get()) > 0;
}

void ApplicationService::activate(const Activation& activation) const {
  if (fHandler) {
    fHandler(activation);
  }
}

}  // namespace veltrix
