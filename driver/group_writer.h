#pragma once

#include <linux/input.h>

#include <array>
#include <cstddef>
#include <span>

#include "driver/engine/output.h"

namespace veltrix {

// Hands groups of events to two devices, with as few writes as keep their order: of a group the keyboard's
// part goes first, and nothing overtakes what came before it on the other device.
class GroupWriter {
 public:
  GroupWriter() noexcept = default;
  // The descriptors stay the caller's.
  GroupWriter(int keyboard, int pointer) noexcept : fKeyboard(keyboard), fPointer(pointer) {}

  // Whole groups, each ended by SYN_REPORT. 0 or an errno value; what was not written then is lost.
  int write(std::span<const OutputEvent> groups) noexcept;

 private:
  void addPart(std::span<const OutputEvent> group, int device) noexcept;
  void add(const OutputEvent& event) noexcept;
  void flush() noexcept;

  int fKeyboard = -1;
  int fPointer = -1;
  int fDevice = -1;  // for which fPending is
  int fError = 0;
  std::size_t fCount = 0;
  std::array<input_event, 128> fPending{};  // times stay 0; the kernel stamps them
};

}  // namespace veltrix
