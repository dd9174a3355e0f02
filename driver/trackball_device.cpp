#include "driver/trackball_device.h"

#include <fcntl.h>
#include <sys/epoll.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <ctime>
#include <utility>

namespace veltrix {

namespace {

template <std::size_t size>
bool hasBit(const std::array<std::uint8_t, size>& bits, unsigned bit) noexcept {
  return bit / 8 < size && (bits[bit / 8] >> (bit % 8) & 1U) != 0;
}

}  // namespace

TrackballDevice::TrackballDevice(PollLoop& loop, const DeviceAddress& address, std::string node)
    : fLoop(loop), fAddress(address), fNode(std::move(node)) {}

int TrackballDevice::open(TrackballListener& listener) noexcept {
  FileDescriptor file(::open(fNode.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
  if (!file)
    return errno;
  if (const int error = prepare(file.get()); error != 0)
    return error;
  // Told of each arrival once, which spares the kernel a second look at a node that was read empty.
  if (!fLoop.add(file.get(), EPOLLIN | EPOLLET, *this))
    return ENOMEM;
  fFile = std::move(file);
  fListener = &listener;
  ++fEpoch;
  std::uint16_t down = 0;
  const int error = buttons(&down);
  fDecoder.start(down);
  return error;
}

int TrackballDevice::prepare(int descriptor) noexcept {
  input_id id{};
  if (ioctl(descriptor, EVIOCGID, &id) < 0)
    return errno;
  // The name of a node that is gone may have been given to another device.
  if (id.vendor != fAddress.vendor || id.product != fAddress.product)
    return ENODEV;
  int clock = CLOCK_MONOTONIC;
  std::array<std::uint8_t, REL_CNT / 8> relative{};
  if (ioctl(descriptor, EVIOCSCLOCKID, &clock) < 0 ||
      ioctl(descriptor, EVIOCGBIT(EV_REL, sizeof relative), relative.data()) < 0) {
    return errno;
  }
  fDecoder.setHighResolution(hasBit(relative, REL_WHEEL_HI_RES), hasBit(relative, REL_HWHEEL_HI_RES));
  return 0;
}

void TrackballDevice::close() noexcept {
  if (!fFile)
    return;
  fLoop.remove(fFile.get());
  fFile.reset();
  ++fEpoch;
}

// What is still to be read has reached everybody else too.
int TrackballDevice::grab() noexcept {
  std::size_t count = 0;
  int error = 0;
  do error = readSome(&count);
  while (error == 0 && count == fEvents.size());
  if (error != 0)
    return error;
  if (ioctl(fFile.get(), EVIOCGRAB, 1) < 0)
    return errno;
  ++fEpoch;
  fDecoder.start(0);
  return 0;
}

void TrackballDevice::ungrab() noexcept {
  ioctl(fFile.get(), EVIOCGRAB, 0);
}

int TrackballDevice::buttons(std::uint16_t* down) noexcept {
  std::array<std::uint8_t, KEY_CNT / 8> keys{};
  if (ioctl(fFile.get(), EVIOCGKEY(sizeof keys), keys.data()) < 0)
    return errno;
  unsigned found = 0;
  for (unsigned button = 0; button < kMostButtons; ++button)
    found |= (hasBit(keys, BTN_MOUSE + button) ? 1U : 0U) << button;
  *down = static_cast<std::uint16_t>(found);
  return 0;
}

// Reads the node empty, as nobody comes back for what is left; less than there is room for was all.
void TrackballDevice::ready(std::uint32_t events) noexcept {
  const unsigned epoch = fEpoch;
  std::size_t count = 0;
  do {
    const int error = readSome(&count);
    if (error != 0)
      return fListener->readingFailed(error);
    if (count == 0 && (events & (EPOLLHUP | EPOLLERR)) != 0)
      return fListener->readingFailed(ENODEV);
    deliver(count);
  } while (count == fEvents.size() && fEpoch == epoch);
}

int TrackballDevice::readSome(std::size_t* count) noexcept {
  const ssize_t size = ::read(fFile.get(), fEvents.data(), sizeof fEvents);
  *count = size > 0 ? static_cast<std::size_t>(size) / sizeof(input_event) : 0;
  return size >= 0 || errno == EAGAIN || errno == EINTR ? 0 : errno;
}

// The listener may close, grab or let go of the device in between.
void TrackballDevice::deliver(std::size_t count) noexcept {
  const unsigned epoch = fEpoch;
  for (std::size_t i = 0; i < count && fEpoch == epoch; ++i) {
    switch (fDecoder.add(fEvents[i])) {
      case FrameDecoder::Outcome::kFrame:
        fListener->frameCame(fDecoder.frame());
        break;
      case FrameDecoder::Outcome::kLost:
        // What was read after the loss is in the state that the kernel is asked for.
        return resynchronize();
      case FrameDecoder::Outcome::kNothing:
        break;
    }
  }
}

void TrackballDevice::resynchronize() noexcept {
  std::uint16_t down = 0;
  if (const int error = buttons(&down); error != 0)
    return fListener->readingFailed(error);
  fDecoder.start(down);
  fListener->eventsLost(down);
}

}  // namespace veltrix
