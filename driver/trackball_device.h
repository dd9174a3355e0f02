#pragma once

#include <linux/input.h>

#include <array>
#include <cstdint>
#include <string>

#include "driver/frame_decoder.h"
#include "driver/poll_loop.h"
#include "driver/trackball.h"
#include "util/file_descriptor.h"

namespace veltrix {

// A trackball by its event node.
class TrackballDevice final : public Trackball, private PollHandler {
 public:
  // The loop must outlive the device.
  TrackballDevice(PollLoop& loop, const DeviceAddress& address, std::string node);
  ~TrackballDevice() override { close(); }
  TrackballDevice(const TrackballDevice&) = delete;
  TrackballDevice& operator=(const TrackballDevice&) = delete;

  DeviceAddress address() const noexcept override { return fAddress; }
  int open(TrackballListener& listener) noexcept override;
  void close() noexcept override;
  int grab() noexcept override;
  void ungrab() noexcept override;
  int buttons(std::uint16_t* down) noexcept override;

 private:
  void ready(std::uint32_t events) noexcept override;
  int prepare(int descriptor) noexcept;
  int readSome(std::size_t* count) noexcept;
  void deliver(std::size_t count) noexcept;
  void resynchronize() noexcept;

  PollLoop& fLoop;
  const DeviceAddress fAddress;
  const std::string fNode;
  TrackballListener* fListener = nullptr;
  FileDescriptor fFile;
  FrameDecoder fDecoder;
  unsigned fEpoch = 0;  // changes when events that were read before are of no use any more
  std::array<input_event, 64> fEvents{};
};

}  // namespace veltrix
