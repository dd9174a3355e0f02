#pragma once

#include <memory>
#include <span>

#include "driver/event_sink.h"
#include "driver/group_writer.h"
#include "driver/keyboard_lamps.h"

struct libevdev_uinput;

namespace veltrix {

struct UinputReleaser {
  void operator()(libevdev_uinput* device) const;
};

// The virtual pointer and keyboard of the driver. The kernel takes them away, and releases what they hold,
// when the process ends in whatever way.
class OutputDevices final : public EventSink {
 public:
  // The loop must outlive the devices.
  explicit OutputDevices(PollLoop& loop) noexcept : fLamps(loop) {}

  // Who is told of the keyboard's lamps; null for nobody.
  void setListener(LampListener* listener) noexcept { fLamps.setListener(listener); }

  int open() noexcept override;
  void close() noexcept override;
  bool isOpen() const noexcept override { return fPointer != nullptr; }
  int write(std::span<const OutputEvent> groups) noexcept override { return fWriter.write(groups); }

 private:
  using Handle = std::unique_ptr<libevdev_uinput, UinputReleaser>;

  Handle fKeyboard;
  Handle fPointer;
  GroupWriter fWriter;
  KeyboardLamps fLamps;  // goes before the keyboard does
};

}  // namespace veltrix
