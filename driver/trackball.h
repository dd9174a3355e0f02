#pragma once

#include <cstdint>

#include "driver/engine/engine_types.h"
#include "driverlink/packets.h"

namespace veltrix {

// Hears what an open trackball reports.
class TrackballListener {
 public:
  virtual ~TrackballListener() = default;
  virtual void frameCame(const InputFrame& frame) noexcept = 0;
  // Events were lost; `buttons` are down now, bit n for button n.
  virtual void eventsLost(std::uint16_t buttons) noexcept = 0;
  // `error` is an errno value; ENODEV when the trackball is gone. It can still be closed.
  virtual void readingFailed(int error) noexcept = 0;
};

// A trackball that is plugged in. What returns int returns 0 or an errno value.
class Trackball {
 public:
  virtual ~Trackball() = default;
  virtual DeviceAddress address() const noexcept = 0;

  // From now on the listener, which must outlive the trackball or its closing, hears of it; others do too.
  virtual int open(TrackballListener& listener) noexcept = 0;
  // Ends that, and the grab with it; nothing when it is not open. The listener may call it.
  virtual void close() noexcept = 0;

  // From now on nobody else hears of it; what others have heard already is not reported any more.
  virtual int grab() noexcept = 0;
  virtual void ungrab() noexcept = 0;

  // The buttons that are down now, bit n for button n.
  virtual int buttons(std::uint16_t* down) noexcept = 0;
};

}  // namespace veltrix
