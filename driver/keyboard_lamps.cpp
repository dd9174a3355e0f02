#include "driver/keyboard_lamps.h"

#include <linux/input.h>
#include <sys/epoll.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdio>

#include "driverlink/packets.h"

namespace veltrix {

namespace {

std::uint16_t lampOf(const input_event& event) noexcept {
  if (event.type != EV_LED)
    return 0;
  if (event.code == LED_CAPSL)
    return kCapsLockLamp;
  return event.code == LED_NUML ? kNumLockLamp : 0;
}

}  // namespace

void KeyboardLamps::open(int descriptor) noexcept {
  leave();
  if (const Status added = fLoop.add(descriptor, EPOLLIN, *this); !added)
    std::fprintf(stderr, "the lamps of the keyboard do not count: %s\n", added.error().message.c_str());
  else
    fDescriptor = descriptor;
}

void KeyboardLamps::close() noexcept {
  leave();
  show(0);
}

void KeyboardLamps::leave() noexcept {
  if (fDescriptor >= 0)
    fLoop.remove(fDescriptor);
  fDescriptor = -1;
}

void KeyboardLamps::ready(std::uint32_t events) noexcept {
  std::array<input_event, 16> buffer{};
  const ssize_t size = ::read(fDescriptor, buffer.data(), sizeof buffer);
  const std::size_t count = size > 0 ? static_cast<std::size_t>(size) / sizeof(input_event) : 0;
  std::uint16_t lit = fLit;
  for (std::size_t i = 0; i < count; ++i) {
    const std::uint16_t lamp = lampOf(buffer[i]);
    lit = static_cast<std::uint16_t>(buffer[i].value != 0 ? lit | lamp : lit & ~lamp);
  }
  // Without its end this would come again at once, and so on.
  const bool failed = size < 0 && errno != EAGAIN && errno != EINTR;
  if (failed || (count == 0 && (events & (EPOLLHUP | EPOLLERR)) != 0))
    leave();
  show(lit);
}

void KeyboardLamps::show(std::uint16_t lit) noexcept {
  if (lit == fLit)
    return;
  fLit = lit;
  if (fListener != nullptr)
    fListener->lampsChanged(lit);
}

}  // namespace veltrix
