#pragma once

#include <atspi/atspi.h>

#include <string>

#include "helper/jump/default_button.h"

namespace veltrix {

struct GObjectReleaser {
  void operator()(void* object) const { g_object_unref(object); }
};
using AccessibleHandle = std::unique_ptr<AtspiAccessible, GObjectReleaser>;

// A part of a window behind the accessibility bus. Its questions wait for the program, at most for the
// time-out that libatspi was given.
class AtspiPart final : public AccessiblePart {
 public:
  explicit AtspiPart(AccessibleHandle accessible) : fAccessible(std::move(accessible)) {}

  Kind kind() override;
  bool isUsableDefault() override;
  int partCount() override;
  std::unique_ptr<AccessiblePart> part(int index) override;
  std::optional<ScreenArea> place() override;

 private:
  AccessibleHandle fAccessible;
};

// Whether the window asks something of the person, as opposed to windows to work in.
bool isDialog(AtspiAccessible* window);

// The window of that program that is a dialog and has the keyboard; null when there is none.
AccessibleHandle findActiveDialog(std::uint32_t processId);

// The same for one object at all times, and for no other that is there at the same time.
std::string accessibleId(AtspiAccessible* accessible);

}  // namespace veltrix
