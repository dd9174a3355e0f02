#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "helper/jump/default_button.h"

namespace veltrix {

// The pointer of the session and the windows under it.
class JumpScreen {
 public:
  virtual ~JumpScreen() = default;
  // Nothing when that cannot be told.
  virtual std::optional<ScreenState> look() = 0;
  virtual void moveTo(ScreenPoint point) = 0;
  // Has takeClosed() tell when this top-level window disappears from the screen.
  virtual void watch(std::uint32_t window) = 0;
  // The watched windows that have disappeared since the last call.
  virtual std::vector<std::uint32_t> takeClosed() = 0;
};

// From the first attempt on: a dialog may give itself a default button only after it has been shown.
inline constexpr std::chrono::milliseconds kJumpPatience{500};
inline constexpr std::chrono::milliseconds kJumpRetry{100};
// For one attempt, so that a program with endless parts does not hold up the next dialog.
inline constexpr std::chrono::milliseconds kJumpSearchTime{300};

// Moves the pointer once for each dialog that opens: one that comes to the front again keeps the pointer
// where the person has put it.
class DialogJumper {
 public:
  using Clock = std::chrono::steady_clock;

  // The screen must outlive the object; `report` is called once for each dialog that it is done with.
  DialogJumper(JumpScreen& screen, std::function<Clock::time_point()> now,
               std::function<void(JumpOutcome)> report);

  // This dialog has come to the front; `id` is its own for as long as it is there. Whatever was being tried
  // for another one is given up.
  void activated(std::string id, std::unique_ptr<AccessiblePart> dialog);

  // Tries once. The wait before the next call, nothing when there is nothing left to do.
  std::optional<std::chrono::milliseconds> attempt();

  // To be called now and then, so that windows that have gone are not kept.
  void forgetClosed();

 private:
  JumpOutcome tryOnce(std::optional<ScreenState>* screen);
  void finish(JumpOutcome outcome, const std::optional<ScreenState>& screen);
  bool isDone(std::uint32_t activeWindow) const;

  struct Finished {
    std::string dialog;
    std::uint32_t window;
    bool isItsOwn;  // its button was in that window, so that another window in front changes nothing
  };

  JumpScreen& fScreen;
  std::function<Clock::time_point()> fNow;
  std::function<void(JumpOutcome)> fReport;
  std::string fId;
  std::unique_ptr<AccessiblePart> fDialog;
  Clock::time_point fDeadline{};
  std::vector<Finished> fDone;
};

}  // namespace veltrix
