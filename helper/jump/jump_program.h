#pragma once

#include <chrono>
#include <functional>
#include <string>

#include "helper/jump/jump_message.h"
#include "helper/reconnect_delay.h"
#include "platform/event_loop.h"
#include "platform/program_start.h"
#include "util/file_descriptor.h"

namespace veltrix {

enum class JumpState {
  kOff,        // no connected trackball wants it, or it is not possible
  kStarting,   // the program runs and does not listen yet
  kListening,  // it waits for dialogs
  kFailed,     // it has ended by itself or could not be started; tried again after a while
};
const char* jumpStateText(JumpState state);

// What is known of jumping, for people who ask why nothing jumps.
struct JumpReport {
  JumpState state = JumpState::kOff;
  std::uint32_t dialogs = 0;  // that have been dealt with since the helper started
  std::uint32_t outcome = 0;  // a JumpOutcome, of the last of them; 0 before the first

  friend bool operator==(const JumpReport& a, const JumpReport& b) = default;
};
// For the status interface; empty for 0.
const char* jumpOutcomeText(std::uint32_t outcome);

// Runs veltrix-jump as long as it is wanted. Talking to the programs of the session takes libraries that are
// bigger than the helper, and answers may fail to come: that is why it is a process of its own, which costs
// nothing without use and can be ended at any moment. All calls from the loop's thread; nothing blocks.
class JumpProgram {
 public:
  // The loop must outlive the object. `changed` is called with each change of the report.
  JumpProgram(sd_event* loop, std::string path, std::function<void(const JumpReport&)> changed);
  ~JumpProgram();
  JumpProgram(const JumpProgram&) = delete;
  JumpProgram& operator=(const JumpProgram&) = delete;

  void setWanted(bool wanted);
  const JumpReport& report() const { return fReport; }

  // For the loop: the program has written; it has ended; it is time to start it.
  void readSome();
  void ended();
  void startAgain();

 private:
  using Clock = std::chrono::steady_clock;

  Status start();
  bool watch();
  void stop();
  void collect();
  void retryLater();
  void announce(JumpState state);

  sd_event* fLoop;
  std::string fPath;
  std::function<void(const JumpReport&)> fChanged;
  JumpReport fReport;
  bool fWanted = false;
  bool fStopped = false;  // it was killed from here and has not ended yet
  Clock::time_point fStartedAt{};
  ReconnectDelay fDelay;
  StartedProgram fProgram;
  FileDescriptor fSocket;
  EventSourceHandle fEnding;
  EventSourceHandle fReading;
  EventSourceHandle fTimer;
};

}  // namespace veltrix
