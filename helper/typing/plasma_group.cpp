#include "helper/typing/plasma_group.h"

namespace veltrix {
namespace {

constexpr const char* kService = "org.kde.keyboard";
constexpr const char* kObject = "/Layouts";
constexpr const char* kInterface = "org.kde.KeyboardLayouts";
constexpr std::uint64_t kPatience = 5'000'000;  // microseconds

// An answer or a signal, each of which carries the group.
int groupTold(sd_bus_message* message, void* group, sd_bus_error* /*error*/) {
  std::uint32_t told = 0;
  const bool isValid =
      sd_bus_message_is_method_error(message, nullptr) == 0 && sd_bus_message_read(message, "u", &told) >= 0;
  static_cast<PlasmaGroup*>(group)->take(isValid ? std::optional(told) : std::nullopt);
  return 0;
}

int ownerChanged(sd_bus_message* /*signal*/, void* group, sd_bus_error* /*error*/) {
  static_cast<PlasmaGroup*>(group)->ask();
  return 0;
}

}  // namespace

// Without the matches the first group counts, as it does where nobody tells.
PlasmaGroup::PlasmaGroup(sd_bus* bus) : fBus(bus) {
  sd_bus_slot* slot = nullptr;
  int result = sd_bus_add_match_async(bus, &slot,
                                      "type='signal',sender='org.kde.keyboard',path='/Layouts',"
                                      "interface='org.kde.KeyboardLayouts',member='layoutChanged'",
                                      groupTold, nullptr, this);
  fChanges.reset(slot);
  slot = nullptr;
  if (result >= 0) {
    result = sd_bus_add_match_async(bus, &slot,
                                    "type='signal',sender='org.freedesktop.DBus',"
                                    "path='/org/freedesktop/DBus',interface='org.freedesktop.DBus',"
                                    "member='NameOwnerChanged',arg0='org.kde.keyboard'",
                                    ownerChanged, nullptr, this);
  }
  fOwner.reset(slot);
  if (result >= 0) {
    ask();
  }
}

void PlasmaGroup::ask() {
  fQuestion.reset();  // its answer would be that of another service
  fGroup.reset();
  sd_bus_message* call = nullptr;
  int result = sd_bus_message_new_method_call(fBus, &call, kService, kObject, kInterface, "getLayout");
  const BusMessageHandle owner(call);
  if (result >= 0) {
    result = sd_bus_message_set_auto_start(call, 0);
  }
  sd_bus_slot* slot = nullptr;
  if (result >= 0) {
    sd_bus_call_async(fBus, &slot, call, groupTold, this, kPatience);
  }
  fQuestion.reset(slot);
}

}  // namespace veltrix
