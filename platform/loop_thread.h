#pragma once

#include <functional>
#include <thread>

#include "platform/event_loop.h"

namespace veltrix {

// An event loop on a thread of its own, which takes no signals of the process.
class LoopThread {
 public:
  // `run` is called once on the thread, adds what it wants to the loop and drives it by runEventLoop(loop,
  // stopped). Without the means for a thread it is not called.
  using Run = std::function<void(sd_event* loop, const bool* stopped)>;
  explicit LoopThread(Run run);
  // Raises `stopped`, which wakes the loop, and waits for `run` to return.
  ~LoopThread();
  LoopThread(const LoopThread&) = delete;
  LoopThread& operator=(const LoopThread&) = delete;

 private:
  int fStopSignal;  // an eventfd, readable once the thread is to end; -1 when there is none
  std::thread fThread;
};

}  // namespace veltrix
