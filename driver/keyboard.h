#pragma once

#include <cstdint>
#include <string>

#include "driver/held_modifiers.h"
#include "driver/poll_loop.h"
#include "util/file_descriptor.h"

namespace veltrix {

class KeyboardWatch;

// One keyboard by its event node. The kernel is told to deliver modifier keys only before anything is read;
// a keyboard where that cannot be is not listened to.
class Keyboard final : private PollHandler {
 public:
  // Both must outlive the keyboard.
  Keyboard(PollLoop& loop, KeyboardWatch& watch, std::string node);
  ~Keyboard() override { close(); }
  Keyboard(const Keyboard&) = delete;
  Keyboard& operator=(const Keyboard&) = delete;

  // Says on standard error what keeps it from being listened to.
  void open() noexcept;
  void close() noexcept;
  std::uint8_t held() const noexcept { return fKeys.held(); }

 private:
  void ready(std::uint32_t events) noexcept override;

  PollLoop& fLoop;
  KeyboardWatch& fWatch;
  const std::string fNode;
  FileDescriptor fFile;
  HeldModifiers fKeys;
};

}  // namespace veltrix
