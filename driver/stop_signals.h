#pragma once

#include "driver/poll_loop.h"
#include "util/file_descriptor.h"

namespace veltrix {

// Takes SIGTERM and SIGINT as events of the loop.
class StopSignals final : private PollHandler {
 public:
  // The loop must outlive the object.
  explicit StopSignals(PollLoop& loop) noexcept : fLoop(loop) {}
  ~StopSignals() override;
  StopSignals(const StopSignals&) = delete;
  StopSignals& operator=(const StopSignals&) = delete;

  // From now on the signals do not end the process.
  Status start();
  bool came() const noexcept { return fCame; }

 private:
  void ready(std::uint32_t events) noexcept override;

  PollLoop& fLoop;
  FileDescriptor fFile;
  bool fCame = false;
};

}  // namespace veltrix
