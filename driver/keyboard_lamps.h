#pragma once

#include <cstdint>

#include "driver/lamp_listener.h"
#include "driver/poll_loop.h"

namespace veltrix {

// The lamps of the virtual keyboard, as whoever reads its keys lights them: they show by which locks its keys
// are read. Nothing else comes that way.
class KeyboardLamps final : private PollHandler {
 public:
  // The loop must outlive the lamps.
  explicit KeyboardLamps(PollLoop& loop) noexcept : fLoop(loop) {}
  ~KeyboardLamps() override { leave(); }
  KeyboardLamps(const KeyboardLamps&) = delete;
  KeyboardLamps& operator=(const KeyboardLamps&) = delete;

  // Null for nobody.
  void setListener(LampListener* listener) noexcept { fListener = listener; }

  // A new keyboard, whose lamps are out. The descriptor stays the caller's, must not make a reader wait, and
  // is open until close(). Says on standard error when it cannot be listened to.
  void open(int descriptor) noexcept;
  // The keyboard goes, and with it its lamps.
  void close() noexcept;

 private:
  void ready(std::uint32_t events) noexcept override;
  void leave() noexcept;
  void show(std::uint16_t lit) noexcept;

  PollLoop& fLoop;
  LampListener* fListener = nullptr;
  int fDescriptor = -1;
  std::uint16_t fLit = 0;
};

}  // namespace veltrix
