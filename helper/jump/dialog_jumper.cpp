#include "helper/jump/dialog_jumper.h"

#include <algorithm>

namespace veltrix {

DialogJumper::DialogJumper(JumpScreen& screen, std::function<Clock::time_point()> now,
                           std::function<void(JumpOutcome)> report)
    : fScreen(screen), fNow(std::move(now)), fReport(std::move(report)) {}

void DialogJumper::activated(std::string id, std::unique_ptr<AccessiblePart> dialog) {
  fId = std::move(id);
  fDialog = std::move(dialog);
  fDeadline = fNow() + kJumpPatience;
}

void DialogJumper::forgetClosed() {
  for (const std::uint32_t window : fScreen.takeClosed()) {
    std::erase_if(fDone, [&](const Finished& done) { return done.window == window; });
  }
}

// That a dialog has come to the front may be told when the next one has already followed it there.
bool DialogJumper::isDone(std::uint32_t activeWindow) const {
  return std::any_of(fDone.begin(), fDone.end(), [&](const Finished& done) {
    return done.dialog == fId && (done.isItsOwn || done.window == activeWindow);
  });
}

std::optional<std::chrono::milliseconds> DialogJumper::attempt() {
  if (fDialog == nullptr)
    return std::nullopt;
  forgetClosed();
  std::optional<ScreenState> screen = fScreen.look();
  if (!screen || isDone(screen->activeWindow)) {
    fDialog.reset();
    return std::nullopt;
  }
  const JumpOutcome outcome = tryOnce(&screen);
  const bool mayChange = outcome == JumpOutcome::kNoButton || outcome == JumpOutcome::kOutOfWindow;
  if (mayChange && fNow() + kJumpRetry <= fDeadline)
    return kJumpRetry;
  finish(outcome, screen);
  return std::nullopt;
}

JumpOutcome DialogJumper::tryOnce(std::optional<ScreenState>* screen) {
  const auto end = fNow() + kJumpSearchTime;
  const auto button = findDefaultButton(*fDialog, SearchLimits{}, [&] { return fNow() >= end; });
  const auto place = button != nullptr ? button->place() : std::nullopt;
  if (!place)
    return JumpOutcome::kNoButton;
  // Once more: the search takes its time, and the hand goes on.
  *screen = fScreen.look();
  if (!*screen)
    return JumpOutcome::kOutOfWindow;
  const auto dialog = (*screen)->activeWindow != 0 ? fDialog->place() : std::nullopt;
  const auto area = dialog ? inScreenPixels(*place, *dialog, (*screen)->activeArea) : place;
  if (!area)
    return JumpOutcome::kOutOfWindow;
  const JumpDecision decision = decideJump(*area, **screen);
  if (decision.outcome == JumpOutcome::kMoved)
    fScreen.moveTo(decision.target);
  return decision.outcome;
}

void DialogJumper::finish(JumpOutcome outcome, const std::optional<ScreenState>& screen) {
  // Without a window manager nothing tells one window from another.
  if (screen && screen->activeWindow != 0) {
    const bool isInside = outcome != JumpOutcome::kNoButton && outcome != JumpOutcome::kOutOfWindow;
    fDone.push_back({std::move(fId), screen->activeWindow, isInside});
    fScreen.watch(screen->activeWindow);
  }
  fDialog.reset();
  fReport(outcome);
}

}  // namespace veltrix
