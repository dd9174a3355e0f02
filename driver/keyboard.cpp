#include "driver/keyboard.h"

#include <fcntl.h>
#include <sys/epoll.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <utility>

#include "driver/event_mask.h"
#include "driver/keyboard_watch.h"

namespace veltrix {

namespace {

// From now on the kernel delivers modifier keys only.
bool maskAllButModifiers(int descriptor) noexcept {
  EventBitmap<KEY_CNT> keys{};
  for (const ModifierKey& key : kModifierKeys)
    keys[key.code / kBitmapWordBits] |= 1UL << key.code % kBitmapWordBits;
  // The mask of type 0 is the one of types.
  const EventBitmap<EV_CNT> types = {1UL << EV_KEY};
  return setEventMask(descriptor, EV_KEY, keys) && setEventMask(descriptor, 0, types);
}

// Throws away what came between opening and masking, unread: the kernel does so when the clock changes.
bool discardQueue(int descriptor) noexcept {
  int clock = CLOCK_MONOTONIC;
  return ioctl(descriptor, EVIOCSCLOCKID, &clock) == 0;
}

}  // namespace

Keyboard::Keyboard(PollLoop& loop, KeyboardWatch& watch, std::string node)
    : fLoop(loop), fWatch(watch), fNode(std::move(node)) {}

void Keyboard::open() noexcept {
  if (fFile)
    return;
  FileDescriptor file(::open(fNode.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
  if (!file || !maskAllButModifiers(file.get()) || !discardQueue(file.get())) {
    std::fprintf(stderr, "the modifier keys of %s do not count: %s\n", fNode.c_str(), std::strerror(errno));
    return;
  }
  if (const Status added = fLoop.add(file.get(), EPOLLIN, *this); !added) {
    std::fprintf(stderr, "%s\n", added.error().message.c_str());
    return;
  }
  fFile = std::move(file);
}

void Keyboard::close() noexcept {
  if (!fFile)
    return;
  fLoop.remove(fFile.get());
  fFile.reset();
  fKeys = HeldModifiers();
}

void Keyboard::ready(std::uint32_t events) noexcept {
  std::array<input_event, 16> buffer{};
  const ssize_t size = ::read(fFile.get(), buffer.data(), sizeof buffer);
  const std::size_t count = size > 0 ? static_cast<std::size_t>(size) / sizeof(input_event) : 0;
  for (std::size_t i = 0; i < count; ++i) fKeys.add(buffer[i]);
  const bool failed = size < 0 && errno != EAGAIN && errno != EINTR;
  if (failed || (count == 0 && (events & (EPOLLHUP | EPOLLERR)) != 0))
    close();
  fWatch.update();
}

}  // namespace veltrix
