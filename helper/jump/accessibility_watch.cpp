#include "helper/jump/accessibility_watch.h"

#include <cstdlib>
#include <cstring>
#include <string_view>

#include "platform/session_bus.h"

namespace veltrix {

namespace {

constexpr const char* kService = "org.a11y.Bus";
constexpr const char* kObject = "/org/a11y/bus";
constexpr const char* kStatusInterface = "org.a11y.Status";
constexpr std::uint64_t kPatience = 5'000'000;  // microseconds

int somethingChanged(sd_bus_message* /*signal*/, void* watch, sd_bus_error* /*error*/) {
  static_cast<AccessibilityWatch*>(watch)->ask();
  return 0;
}

int takeAnswer(sd_bus_message* answer, void* watch, sd_bus_error* /*error*/) {
  int isOn = 0;
  const bool isValid = sd_bus_message_is_method_error(answer, nullptr) == 0 &&
                       sd_bus_message_read(answer, "v", "b", &isOn) >= 0;
  static_cast<AccessibilityWatch*>(watch)->answered(isValid && isOn != 0);
  return 0;
}

std::string_view variable(const char* name) {
  const char* value = std::getenv(name);
  return value != nullptr ? value : "";
}

}  // namespace

Status AccessibilityWatch::start(sd_bus* bus) {
  fBus = bus;
  sd_bus_slot* slot = nullptr;
  int result = sd_bus_add_match_async(bus, &slot,
                                      "type='signal',sender='org.a11y.Bus',path='/org/a11y/bus',"
                                      "interface='org.freedesktop.DBus.Properties',"
                                      "member='PropertiesChanged',arg0='org.a11y.Status'",
                                      somethingChanged, nullptr, this);
  fProperties.reset(slot);
  slot = nullptr;
  if (result >= 0) {
    result = sd_bus_add_match_async(bus, &slot,
                                    "type='signal',sender='org.freedesktop.DBus',"
                                    "path='/org/freedesktop/DBus',interface='org.freedesktop.DBus',"
                                    "member='NameOwnerChanged',arg0='org.a11y.Bus'",
                                    somethingChanged, nullptr, this);
  }
  fOwner.reset(slot);
  if (result < 0) {
    return Error{-result, std::string("cannot watch the accessibility service: ") + std::strerror(-result),
                 std::nullopt};
  }
  ask();
  return Done{};
}

void AccessibilityWatch::ask() {
  fQuestion.reset();  // its answer would be out of date
  sd_bus_message* call = nullptr;
  int result = sd_bus_message_new_method_call(fBus, &call, kService, kObject,
                                              "org.freedesktop.DBus.Properties", "Get");
  const BusMessageHandle owner(call);
  if (result >= 0)
    result = sd_bus_message_append(call, "ss", kStatusInterface, "IsEnabled");
  if (result >= 0)
    result = sd_bus_message_set_auto_start(call, 0);
  sd_bus_slot* slot = nullptr;
  if (result >= 0)
    result = sd_bus_call_async(fBus, &slot, call, takeAnswer, this, kPatience);
  fQuestion.reset(slot);
  if (result < 0)
    answered(false);
}

void AccessibilityWatch::answered(bool isOn) {
  if (isOn == fIsOn)
    return;
  fIsOn = isOn;
  fChanged(isOn);
}

bool isX11Session() {
  return !variable("DISPLAY").empty() && variable("WAYLAND_DISPLAY").empty() &&
         variable("XDG_SESSION_TYPE") != "wayland";
}

}  // namespace veltrix
