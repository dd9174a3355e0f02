#pragma once

#include <systemd/sd-bus.h>

#include <functional>
#include <memory>

#include "helper/status_interface.h"
#include "util/result.h"

namespace veltrix {

// Whether the programs of the session tell what their windows consist of: the accessibility service runs and
// is turned on. Only asks; the service is neither started nor turned on by it. Off until it has answered.
class AccessibilityWatch {
 public:
  // `changed` is called from the loop, with each change alone.
  explicit AccessibilityWatch(std::function<void(bool isOn)> changed) : fChanged(std::move(changed)) {}
  AccessibilityWatch(const AccessibilityWatch&) = delete;
  AccessibilityWatch& operator=(const AccessibilityWatch&) = delete;

  // The connection must be attached to a loop and outlive the object.
  Status start(sd_bus* bus);

  bool isOn() const { return fIsOn; }

  // For the bus: something has changed; the service has answered.
  void ask();
  void answered(bool isOn);

 private:
  sd_bus* fBus = nullptr;
  std::function<void(bool)> fChanged;
  bool fIsOn = false;
  BusSlotHandle fProperties;
  BusSlotHandle fOwner;
  BusSlotHandle fQuestion;
};

// Whether this process lives in an X11 session, by its environment. In a Wayland session no program learns
// where the windows of others are, even though an X server may run there as well.
bool isX11Session();

}  // namespace veltrix
