#include "helper/simulation_interface.h"

#include <systemd/sd-bus.h>

#include <cstring>

namespace veltrix {

namespace {

// Reads the one trackball that a call names; the answer to a call that names none is in `error`.
std::optional<SimulatedDevice> readDevice(sd_bus_message* call, sd_bus_error* error, int* result) {
  const char* text = nullptr;
  *result = sd_bus_message_read(call, "s", &text);
  if (*result < 0)
    return std::nullopt;
  const auto device = parseSimulatedDevice(text);
  if (!device) {
    *result =
        sd_bus_error_setf(error, SD_BUS_ERROR_INVALID_ARGS, "\"%s\" is not VENDOR:PRODUCT:VERSION", text);
  }
  return device;
}

int plug(sd_bus_message* call, void* simulation, sd_bus_error* error) {
  int result = 0;
  const auto device = readDevice(call, error, &result);
  if (!device)
    return result;
  static_cast<SimulationInterface*>(simulation)->source().plug(*device);
  return sd_bus_reply_method_return(call, "");
}

int unplug(sd_bus_message* call, void* simulation, sd_bus_error* error) {
  int result = 0;
  const auto device = readDevice(call, error, &result);
  if (!device)
    return result;
  if (!static_cast<SimulationInterface*>(simulation)->source().unplug(*device)) {
    return sd_bus_error_set(error, "com.aldmoor.VeltrixHelper1.Error.NotConnected",
                            "No such trackball is connected");
  }
  return sd_bus_reply_method_return(call, "");
}

int setAccessibility(sd_bus_message* call, void* simulation, sd_bus_error* /*error*/) {
  int granted = 0;
  const int result = sd_bus_message_read(call, "b", &granted);
  if (result < 0)
    return result;
  static_cast<SimulationInterface*>(simulation)->core().setAccessibility(granted != 0);
  return sd_bus_reply_method_return(call, "");
}

constexpr sd_bus_vtable kSimulationTable[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_METHOD_WITH_ARGS("Plug", SD_BUS_ARGS("s", device), SD_BUS_NO_RESULT, plug,
                            SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD_WITH_ARGS("Unplug", SD_BUS_ARGS("s", device), SD_BUS_NO_RESULT, unplug,
                            SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD_WITH_ARGS("SetAccessibility", SD_BUS_ARGS("b", granted), SD_BUS_NO_RESULT, setAccessibility,
                            SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_VTABLE_END,
};

}  // namespace

Status SimulationInterface::publish(sd_bus* bus) {
  sd_bus_slot* slot = nullptr;
  const int result =
      sd_bus_add_object_vtable(bus, &slot, kHelperObject, kSimulationInterface, kSimulationTable, this);
  fSlot.reset(slot);
  if (result < 0) {
    return Error{-result, std::string("cannot offer the simulation: ") + std::strerror(-result),
                 std::nullopt};
  }
  return Done{};
}

}  // namespace veltrix
