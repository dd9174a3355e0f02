#pragma once

#include <span>

#include "driver/engine/output.h"

namespace veltrix {

// The virtual pointer and keyboard, through which events reach the desktop. What returns int returns 0 or an
// errno value.
class EventSink {
 public:
  virtual ~EventSink() = default;
  // Makes the devices; nothing when they are there.
  virtual int open() noexcept = 0;
  // Takes them away, and with them everything that is pressed.
  virtual void close() noexcept = 0;
  virtual bool isOpen() const noexcept = 0;
  // Whole groups, each ended by SYN_REPORT; of a group the keys of the keyboard arrive first.
  virtual int write(std::span<const OutputEvent> groups) noexcept = 0;
};

}  // namespace veltrix
